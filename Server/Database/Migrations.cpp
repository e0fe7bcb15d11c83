#include "Database/Database.h"

#include <QDir>
#include <QFile>
#include <QTextStream>

namespace stillgate::server
{

namespace
{

/// The statements of a migration: its lines without comments, cut at each semicolon that ends one.
QStringList statementsIn(const QString& file)
{
    QFile source{file};
    if (!source.open(QFile::ReadOnly))
        throw std::logic_error{"A migration is missing: " + file.toStdString()};
    QString text;
    QTextStream lines{&source};
    while (!lines.atEnd()) {
        const auto line = lines.readLine();
        if (!line.trimmed().startsWith("--"))
            text += line + '\n';
    }
    QStringList statements;
    for (const auto& statement : text.split(";\n"))
        if (!statement.trimmed().isEmpty())
            statements.append(statement.trimmed());
    return statements;
}

} // namespace

void Database::migrate()
{
    const QDir folder{":/stillgate-server/migrations"};
    const auto files = folder.entryList({"*.sql"}, QDir::Files, QDir::Name);
    const auto eventNumber =
        isPostgreSQL() ? "BIGINT GENERATED ALWAYS AS IDENTITY PRIMARY KEY" : "INTEGER PRIMARY KEY AUTOINCREMENT";
    // Two servers that start at once do it one after the other. Not within the transaction, which would see the
    // database as it was before the wait.
    if (isPostgreSQL())
        command("SELECT pg_advisory_lock(727474)");
    inTransaction([&] {
        command("CREATE TABLE IF NOT EXISTS schema_versions (version BIGINT PRIMARY KEY)");
        const auto current = number("SELECT MAX(version) FROM schema_versions");
        if (current > files.size())
            throw std::runtime_error{"The database was made by a newer version of this program"};
        for (auto version = current + 1; version <= files.size(); ++version) {
            for (auto statement : statementsIn(folder.filePath(files[version - 1])))
                command(statement.replace("EVENT_NUMBER", eventNumber).toStdString());
            execute("INSERT INTO schema_versions (version) VALUES (?)", version);
        }
    });
    if (isPostgreSQL())
        command("SELECT pg_advisory_unlock(727474)");
}

} // namespace stillgate::server
