#include "tests/guard/UnitFile.h"

#include <QFile>

#include <stdexcept>

namespace stillgate::test
{

UnitFile::UnitFile(const QString& path)
{
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error{"no unit file " + path.toStdString()};
    for (const auto& line : QString::fromUtf8(file.readAll()).split('\n')) {
        const auto equals = line.indexOf('=');
        if (equals > 0 && !line.startsWith('#'))
            m_values[line.left(equals)].append(line.mid(equals + 1));
    }
}

} // namespace stillgate::test
