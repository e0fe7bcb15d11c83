#pragma once

#include <QHash>
#include <QStringList>

namespace stillgate::test
{

/// A unit file of systemd (systemd.unit(5)): the values of each key, in order, whichever section they stand in.
class UnitFile
{
public:
    /// Throws std::runtime_error for one that can't be read.
    explicit UnitFile(const QString& path);

    [[nodiscard]] QStringList all(const QString& key) const { return m_values.value(key); }

    [[nodiscard]] QString last(const QString& key) const { return m_values.value(key).value(all(key).size() - 1); }

private:
    QHash<QString, QStringList> m_values;
};

} // namespace stillgate::test
