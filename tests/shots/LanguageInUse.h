#pragma once

#include "Localization/L.h"
#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Memory/MemoryHost.h"
#include "Platform/Memory/MemoryUserDefaults.h"
#include "tests/shots/Stage.h"

#include <QLocale>

namespace stillgate::test
{

/// The process speaks this language, in the texts as built, until another is in use.
class LanguageInUse
{
public:
    explicit LanguageInUse(const std::string& code)
    {
        MemoryUserDefaults defaults;
        defaults.setString("sg_language", code);
        m_manager.emplace(Stage::StageBundle{}, LinuxFileManager{}, defaults, MemoryHost{});
        ProcessTexts::use(*m_manager);
        QLocale::setDefault(QLocale{QString::fromStdString(code)});
    }

private:
    std::optional<LocalizationManager> m_manager;
};

} // namespace stillgate::test
