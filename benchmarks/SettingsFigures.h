#pragma once

#include "Models/Record.h"

namespace stillgate
{

/// What stillgate-settings-use has measured, as it writes it for stillgate-bench. Times are in seconds, from the user's
/// choice to the end of the frame that shows it; memory is in megabytes, as of memoryOf().
struct SettingsFigures
{
    double opening = 0;          ///< of the window, when it has been open before
    double firstVisit = 0;       ///< of the tab that takes longest when it is chosen for the first time
    double usualTab = 0;         ///< the median of the tabs
    double slowestTab = 0;       ///< the worst of the tabs
    double memoryEarly = 0;      ///< after 100 choices of a tab
    double memoryLate = 0;       ///< after 1,000
    double thousandRules = 0;    ///< a list of as many, chosen
    double thousandScrolled = 0; ///< the mean frame while that list is scrolled from its top to its bottom

    STILLGATE_RECORD(SettingsFigures, opening, firstVisit, usualTab, slowestTab, memoryEarly, memoryLate, thousandRules,
        thousandScrolled);
};

} // namespace stillgate
