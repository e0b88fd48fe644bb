#include "foundation/base/XTime.h"

#include <ctime>
#include <locale.h>

namespace {

/// The calendar parts by localtime_r or gmtime_r; a year beyond `int` leaves them all 0 as shown.
std::tm Split(std::int64_t seconds, std::tm* (*split)(const std::time_t*, std::tm*))
{
    std::tm parts = {};
    const std::time_t time = seconds;
    if (!split(&time, &parts)) {
        parts = {};
        parts.tm_year = -1900;
        parts.tm_mon = -1;
        parts.tm_wday = -1;
    }
    return parts;
}

std::tm ToLocal(std::int64_t seconds)
{
    return Split(seconds, localtime_r);
}

XString FormatParts(const char* format, const std::tm& parts)
{
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    // with one more byte an empty text differs from a buffer that is too small
    const XString marked = XString(format) + '.';
    XString text;
    for (int size = 128; size <= 1 << 20; size *= 2) {
        const std::size_t length = strftime_l(text.GetBuffer(size), size, marked, &parts, plain);
        text.ReleaseBuffer(static_cast<int>(length));
        if (length > 0) return text.Left(static_cast<int>(length) - 1);
    }
    return text;
}

} // namespace

XTime::XTime(int year, int month, int day, int hour, int minute, int second)
{
    std::tm parts = {};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;
    m_seconds = mktime(&parts);
}

XTime XTime::GetCurrentTime()
{
    return XTime(std::time(nullptr));
}

int XTime::GetYear() const
{
    return ToLocal(m_seconds).tm_year + 1900;
}

int XTime::GetMonth() const
{
    return ToLocal(m_seconds).tm_mon + 1;
}

int XTime::GetDay() const
{
    return ToLocal(m_seconds).tm_mday;
}

int XTime::GetHour() const
{
    return ToLocal(m_seconds).tm_hour;
}

int XTime::GetMinute() const
{
    return ToLocal(m_seconds).tm_min;
}

int XTime::GetSecond() const
{
    return ToLocal(m_seconds).tm_sec;
}

int XTime::GetDayOfWeek() const
{
    return ToLocal(m_seconds).tm_wday + 1;
}

XString XTime::Format(const char* format) const
{
    return FormatParts(format, ToLocal(m_seconds));
}

XString XTime::FormatGmt(const char* format) const
{
    return FormatParts(format, Split(m_seconds, gmtime_r));
}
