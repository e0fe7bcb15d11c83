#include "Family/Days.h"

#include <QDateTime>
#include <QTimeZone>

namespace stillgate::server
{

namespace
{

QTimeZone zone(const std::string& identifier)
{
    return QTimeZone{QByteArray::fromStdString(identifier)};
}

QDate date(const std::string& day)
{
    return QDate::fromString(QString::fromStdString(day), Qt::ISODate);
}

std::string text(QDate day)
{
    return day.toString(Qt::ISODate).toStdString();
}

} // namespace

std::string dayOf(Date moment, const std::string& timeZone)
{
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(moment).time_since_epoch().count();
    return text(QDateTime::fromMSecsSinceEpoch(milliseconds, zone(timeZone)).date());
}

Date startOfDay(const std::string& day, const std::string& timeZone)
{
    return Date{std::chrono::milliseconds{date(day).startOfDay(zone(timeZone)).toMSecsSinceEpoch()}};
}

std::string dayAfter(const std::string& day, int days)
{
    return text(date(day).addDays(days));
}

bool isDay(const std::string& text)
{
    return text.size() == 10 && date(text).isValid();
}

} // namespace stillgate::server
