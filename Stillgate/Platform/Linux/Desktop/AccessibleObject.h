#pragma once

#include "Platform/ScreenRectangle.h"
#include "Platform/Task.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace stillgate
{

/// Something that a program shows, as it tells assistive technology of it (AT-SPI2). Its answers are a stranger's: an
/// answer of another form than the interface's is none, and one that takes too long too.
class AccessibleObject
{
public:
    /// Numbers of the interface.
    enum Role : uint32_t { entry = 79, documentWeb = 95 };

    enum State : uint32_t { active = 1, focused = 12, showing = 25 };

    AccessibleObject(QDBusConnection bus, QString service, QString path)
        : m_bus(std::move(bus))
        , m_service(std::move(service))
        , m_path(std::move(path))
    {}

    /// What stands above all programs; its children are they.
    [[nodiscard]] static AccessibleObject registry(const QDBusConnection& bus);

    [[nodiscard]] Task<std::vector<AccessibleObject>> children() const;

    /// What this embeds: in a browser's window, the document of the front tab.
    [[nodiscard]] Task<std::vector<AccessibleObject>> embedded() const;

    [[nodiscard]] Task<uint32_t> role() const; ///< 0 if it doesn't tell
    [[nodiscard]] Task<uint64_t> states() const;
    [[nodiscard]] Task<std::string> name() const;
    [[nodiscard]] Task<std::string> text() const;

    /// Where on the screens it is, in pixels.
    [[nodiscard]] Task<std::optional<ScreenRectangle>> extents() const;

    /// Where a document comes from; nothing for what is none.
    [[nodiscard]] Task<std::optional<std::string>> documentAddress() const;

    /// The process that shows it, in our pid namespace; 0 if unknown.
    [[nodiscard]] Task<uint32_t> process() const;

private:
    [[nodiscard]] Task<QDBusMessage> call(
        const char* interface, const char* method, const char* form, QVariantList arguments = {}) const;
    [[nodiscard]] AccessibleObject at(QString service, QString path) const;

    QDBusConnection m_bus;
    QString m_service;
    QString m_path;
};

[[nodiscard]] constexpr bool has(uint64_t states, AccessibleObject::State state)
{
    return (states >> state & 1U) != 0;
}

} // namespace stillgate
