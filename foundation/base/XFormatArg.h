#pragma once

#include "foundation/base/XApi.h"

#include <concepts>
#include <cstdint>
#include <string_view>
#include <type_traits>

class XString;

/// One value handed to XString::Format. It carries its type, so that a conversion that does not
/// fit the value converts it in place of reading foreign memory. Made by the compiler, on the
/// stack of the call; keeps no copy of a text.
struct XAPI tagXFormatArg
{
    enum class Kind { None, Integer, Real, Text, WideText, Pointer };

    tagXFormatArg() = default;

    template <class T>
    requires(std::integral<T> || std::is_enum_v<T>) tagXFormatArg(T value)
        : kind(Kind::Integer), byteSize(static_cast<int>(sizeof(T)))
    {
        if constexpr (std::is_enum_v<T>) {
            *this = tagXFormatArg(static_cast<std::underlying_type_t<T>>(value));
        } else {
            isSigned = std::is_signed_v<T>;
            bits = static_cast<std::uint64_t>(static_cast<std::int64_t>(value));
        }
    }

    tagXFormatArg(float value) : kind(Kind::Real), real(value) {}
    tagXFormatArg(double value) : kind(Kind::Real), real(value) {}
    tagXFormatArg(long double value) : kind(Kind::Real), real(static_cast<double>(value)) {}
    tagXFormatArg(const char* value)
        : kind(Kind::Text), text(value ? std::string_view(value) : std::string_view("(null)"))
    {}
    tagXFormatArg(std::string_view value) : kind(Kind::Text), text(value) {}
    tagXFormatArg(const XString& value);
    tagXFormatArg(const wchar_t* value) : kind(Kind::WideText), pointer(value) {}
    tagXFormatArg(const void* value) : kind(Kind::Pointer), pointer(value) {}

    Kind kind = Kind::None;
    bool isSigned = false;
    int byteSize = 0;       ///< of an integer, for the unsigned reading of a negative one
    std::uint64_t bits = 0; ///< an integer, sign-extended
    double real = 0.0;
    std::string_view text;
    const void* pointer = nullptr;
};
