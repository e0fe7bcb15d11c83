#pragma once

#include "Localization/L.h"
#include "Platform/Memory/MemoryBundle.h"
#include "Platform/Memory/MemoryFileManager.h"
#include "Platform/Memory/MemoryHost.h"
#include "Platform/Memory/MemoryUserDefaults.h"

namespace stillgate::test
{

/// The process has these English texts for as long as this object lives. Otherwise, in a test, a key is its own text.
class TextsInUse
{
public:
    explicit TextsInUse(std::string json)
    {
        m_files.put(MemoryBundle{}.path() / "Contents/Resources/i18n/en.json", std::move(json));
        m_manager.emplace(MemoryBundle{}, m_files, MemoryUserDefaults{}, MemoryHost{});
        ProcessTexts::use(*m_manager);
    }

    ~TextsInUse()
    {
        static const LocalizationManager none{MemoryBundle{}, MemoryFileManager{}, MemoryUserDefaults{}, MemoryHost{}};
        ProcessTexts::use(none);
    }

    TextsInUse(const TextsInUse&) = delete;
    TextsInUse& operator=(const TextsInUse&) = delete;

private:
    MemoryFileManager m_files;
    std::optional<LocalizationManager> m_manager;
};

} // namespace stillgate::test
