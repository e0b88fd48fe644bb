#pragma once

#include "foundation/base/XString.h"

#include <cstdint>

/// A moment, in whole seconds since 1970-01-01 00:00:00 UTC.
///
/// The calendar parts are those of the local time zone. A moment whose year no calendar here can
/// show has all parts 0. Threads: any.
class XAPI XTime
{
public:
    XTime() = default;
    explicit XTime(std::int64_t seconds) : m_seconds(seconds) {}
    /// Local calendar time; month 1..12, day 1..31. Parts out of range run over (32 January is
    /// 1 February).
    XTime(int year, int month, int day, int hour, int minute, int second);

    static XTime GetCurrentTime();

    std::int64_t GetTime() const { return m_seconds; }
    int GetYear() const;
    int GetMonth() const; ///< 1..12
    int GetDay() const;   ///< 1..31
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    int GetDayOfWeek() const; ///< 1 Sunday .. 7 Saturday

    /// Text by the conversions of strftime, with English names in every locale.
    XString Format(const char* format) const;    ///< local time
    XString FormatGmt(const char* format) const; ///< universal time

    friend bool operator==(const XTime&, const XTime&) = default;
    friend auto operator<=>(const XTime&, const XTime&) = default;

private:
    std::int64_t m_seconds = 0;
};
