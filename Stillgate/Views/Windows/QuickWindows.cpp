#include "Views/Windows/QuickWindows.h"

#include "App/ManagedWindows.h"
#include "DesignSystem/Motion.h"
#include "Localization/L.h"
#include "Views/BlockScreen/BlockModalViewModel.h"
#include "Views/Common/AppIconProvider.h"
#include "Views/Gates/ForceUpdateViewModel.h"
#include "Views/Gates/MaintenanceViewModel.h"
#include "Views/Popover/PopoverViewModel.h"
#include "Views/Settings/SettingsViewModel.h"
#include "Views/SignIn/AuthViewModel.h"
#include "Views/Windows/BlockModalWindow.h"
#include "Views/Windows/ContentWindow.h"
#include "Views/Windows/PopoverWindow.h"
#include "Views/Windows/SettingsTabs.h"

namespace stillgate
{

QuickWindows::QuickWindows(WindowServices services)
    : m_services(std::move(services))
{}

QuickWindows::~QuickWindows() = default;

std::unique_ptr<Window> QuickWindows::makeWindow(const WindowDescription& description)
{
    const auto show = [&](const char* module, const char* type, std::unique_ptr<QObject> viewModel) {
        auto window =
            std::make_unique<ContentWindow>(engine(), description, Screen{module, type, std::move(viewModel)});
        followMotionPreference();
        return window;
    };
    if (description.id == windowid::auth)
        return show("SignIn", "AuthView", std::make_unique<AuthViewModel>(m_services.deviceAuthorization));
    if (description.id == windowid::maintenance)
        return show("Gates", "MaintenanceView", std::make_unique<MaintenanceViewModel>(m_services.state));
    if (description.id == windowid::forceUpdate)
        return show("Gates", "ForceUpdateView",
            std::make_unique<ForceUpdateViewModel>(m_services.state, m_services.bundle, m_services.workspace));
    return nullptr;
}

std::unique_ptr<Popover> QuickWindows::makePopover()
{
    auto viewModel = std::make_unique<PopoverViewModel>(PopoverServices{
        .session = m_services.state,
        .monitor = m_services.monitor,
        .notifications = m_services.notifications,
        .bundle = m_services.bundle,
        .pasteboard = m_services.pasteboard,
        .clock = m_services.clock,
        .scheduler = m_services.scheduler,
        .showSettings = [this] { showSettings(); },
        .refresh = [this] { runDetached(m_services.state.refreshData()); },
        .quit = m_services.quit,
    });
    auto popover = std::make_unique<PopoverWindow>(
        engine(), Screen{"Popover", "MenuBarPopover", std::move(viewModel)}, m_services.clock);
    followMotionPreference();
    return popover;
}

void QuickWindows::showSettings()
{
    if (!m_settings) {
        const auto title = L.localized("settings.title");
        const WindowDescription description{
            .title = title, .width = 960, .height = 700, .minimumWidth = 700, .minimumHeight = 500};
        auto viewModel = std::make_unique<SettingsViewModel>(
            m_services.state, m_services.notifications, [this](int tag) { return makeSettingsTab(tag, m_services); });
        m_settings = std::make_unique<ContentWindow>(
            engine(), description, Screen{"Settings", "SettingsWindow", std::move(viewModel)});
        m_settings->onClose([this] { m_settings.reset(); });
        followMotionPreference();
    }
    m_settings->bringToFront();
}

void QuickWindows::prepareBlockModal()
{
    if (!m_blockModal)
        m_blockModal = std::make_unique<QQmlComponent>(&engine(), addressOfScreen("BlockScreen", "BlockModalView"));
}

std::unique_ptr<Window> QuickWindows::makeBlockModal(const BlockModal& modal, const BlockModalActions& actions)
{
    prepareBlockModal();
    const auto makeScreen = [this, modal, actions] {
        const int hour = m_services.host.hourOfDay(m_services.clock.now());
        return Screen{"BlockScreen", "BlockModalView",
            std::make_unique<BlockModalViewModel>(modal, actions, hour, m_services.bundle.path())};
    };
    auto window = std::make_unique<BlockModalWindow>(engine(), makeScreen, modal.place, m_services.stacking);
    followMotionPreference();
    return window;
}

QQmlEngine& QuickWindows::engine()
{
    if (!m_engine) {
        m_engine = std::make_unique<QQmlEngine>();
        m_engine->addImportPath("qrc:/qt/qml");
        m_engine->addImageProvider(
            AppIconProvider::scheme, new AppIconProvider{m_services.dataFolders}); // the engine's now
        m_preferencesChange = m_services.displayPreferences.onChange([this] { followMotionPreference(); });
    }
    return *m_engine;
}

/// The module's types are known once a screen has imported it.
void QuickWindows::followMotionPreference()
{
    const auto motion = qmlTypeId("Stillgate.DesignSystem", 1, 0, "Motion");
    m_engine->singletonInstance<Motion*>(motion)->setIsReduced(m_services.displayPreferences.shouldReduceMotion());
}

} // namespace stillgate
