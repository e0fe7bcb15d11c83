#pragma once

#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace stillgate::test
{

/// org.freedesktop.PolicyKit1 on the system bus, which says what a test wants it to say. It denies whatever it wasn't
/// told to grant.
class PolkitStandIn final : public QDBusVirtualObject
{
    Q_OBJECT

public:
    PolkitStandIn();
    ~PolkitStandIn() override;

    std::set<std::string> granted;      ///< actions
    bool isAskingAPerson = false;       ///< who takes the time: `decide` answers
    std::vector<std::string> asked;     ///< the actions, in order
    std::vector<std::string> cancelled; ///< ids of questions

    /// Answers every open question.
    void decide(bool isGranted);

    [[nodiscard]] std::size_t openQuestions() const { return m_open.size(); }

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    std::vector<QDBusMessage> m_open;
};

} // namespace stillgate::test
