#include "Platform/Linux/Desktop/X11WindowQuery.h"

#include <algorithm>
#include <filesystem>

namespace stillgate
{

namespace
{

constexpr uint32_t withdrawn = 0; // WM_STATE, ICCCM 4.1.3.1

bool has(const std::vector<uint32_t>& atoms, xcb_atom_t atom)
{
    return std::ranges::find(atoms, atom) != atoms.end();
}

/// "firefox\0Firefox\0": the instance, which is the user's to choose, and the class.
std::string classIn(const std::string& property)
{
    const auto separator = property.find('\0');
    if (separator == std::string::npos)
        return {};
    return property.substr(separator + 1).c_str(); // up to its own zero
}

std::string executableOf(int process)
{
    if (process <= 0)
        return {};
    std::error_code error;
    const auto file = std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/exe", error);
    auto name = file.filename().string();
    // An update replaces the file while the program runs.
    if (constexpr std::string_view mark = " (deleted)"; name.ends_with(mark))
        name.resize(name.size() - mark.size());
    return name;
}

} // namespace

X11WindowQuery::X11WindowQuery(const X11Connection& connection, xcb_window_t window)
    : m_connection(connection)
    , m_window(window)
    , m_managementState(connection.ask(window, connection.atoms().managementState))
    , m_windowState(connection.ask(window, connection.atoms().windowState))
    , m_type(connection.ask(window, connection.atoms().windowType))
    , m_class(connection.ask(window, XCB_ATOM_WM_CLASS))
    , m_applicationId(connection.ask(window, connection.atoms().applicationId))
    , m_desktopFile(connection.ask(window, connection.atoms().desktopFile))
    , m_statedProcess(connection.ask(window, connection.atoms().processId))
{
    if (connection.knowsProcesses()) {
        const xcb_res_client_id_spec_t of{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        m_process = xcb_res_query_client_ids(connection.xcb(), 1, &of);
    }
}

std::optional<X11WindowFacts> X11WindowQuery::answer() const
{
    const auto managementState = m_connection.answer(m_managementState);
    const auto management = numbersOf(managementState);
    const auto states = numbersOf(m_connection.answer(m_windowState));
    const auto types = numbersOf(m_connection.answer(m_type));
    X11WindowFacts facts{
        .isManaged = !management.empty() && management.front() != withdrawn,
        .isIconic = has(states, m_connection.atoms().hidden),
        .isFurniture = has(types, m_connection.atoms().desktop) || has(types, m_connection.atoms().dock),
        .hints =
            {
                .applicationId = textOf(m_connection.answer(m_applicationId)),
                .desktopFile = textOf(m_connection.answer(m_desktopFile)),
                .windowClass = classIn(textOf(m_connection.answer(m_class))),
            },
    };
    const auto stated = numbersOf(m_connection.answer(m_statedProcess));
    // What the window states is the pid in the app's own namespace, which may be another one than ours.
    if (m_process)
        facts.processIdentifier = m_connection.processIn(*m_process);
    else if (!stated.empty())
        facts.processIdentifier = static_cast<int>(stated.front());
    facts.hints.executable = executableOf(facts.processIdentifier);
    return managementState ? std::optional{facts} : std::nullopt;
}

} // namespace stillgate
