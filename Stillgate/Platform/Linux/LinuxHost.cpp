#include "Platform/Linux/LinuxHost.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <climits>
#include <unistd.h>

namespace stillgate
{

using std::chrono::duration_cast;
using std::chrono::milliseconds;

namespace
{

QDateTime localTime(Date moment)
{
    return QDateTime::fromMSecsSinceEpoch(duration_cast<milliseconds>(moment.time_since_epoch()).count());
}

} // namespace

std::string LinuxHost::name() const
{
    char name[HOST_NAME_MAX + 1] = {};
    return ::gethostname(name, sizeof name - 1) == 0 ? name : "";
}

std::string LinuxHost::languageCode() const
{
    const auto languages = QLocale::system().uiLanguages();
    return languages.isEmpty() ? "" : QLocale{languages.front()}.name().section('_', 0, 0).toStdString();
}

Date LinuxHost::startOfDay(Date moment) const
{
    // Midnight, or what comes after it where the clocks skip it.
    const auto start = localTime(moment).date().startOfDay(Qt::LocalTime);
    return Date{milliseconds{start.toMSecsSinceEpoch()}};
}

int LinuxHost::hourOfDay(Date moment) const
{
    return localTime(moment).time().hour();
}

std::chrono::weekday LinuxHost::weekday(Date moment) const
{
    return std::chrono::weekday{static_cast<unsigned>(localTime(moment).date().dayOfWeek())};
}

std::string LinuxHost::timeZone() const
{
    return QTimeZone::systemTimeZoneId().toStdString();
}

} // namespace stillgate
