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
    const auto time = duration_cast<milliseconds>(moment.time_since_epoch()).count();
    // Midnight, or what comes after it where the clocks skip it.
    const auto start = QDateTime::fromMSecsSinceEpoch(time).date().startOfDay(Qt::LocalTime);
    return Date{milliseconds{start.toMSecsSinceEpoch()}};
}

} // namespace stillgate
