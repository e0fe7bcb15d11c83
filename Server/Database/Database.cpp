#include "Database/Database.h"

#include <QSqlError>
#include <QUrl>
#include <QUrlQuery>

#include <atomic>
#include <chrono>
#include <map>
#include <random>
#include <thread>

namespace stillgate::server
{

namespace
{

// SQLSTATE of PostgreSQL (its manual, Appendix A) and result codes of SQLite.
bool isConflictCode(const QString& code)
{
    static const QStringList codes{"40001", "40P01", "517"};
    return codes.contains(code);
}

bool isPostgreSQLLocation(const std::string& location)
{
    return location.starts_with("postgresql://") || location.starts_with("postgres://");
}

/// What follows the first line can hold values of the row.
std::string firstLine(const QString& text)
{
    return text.section('\n', 0, 0).trimmed().toStdString();
}

void describePostgreSQL(QSqlDatabase& connection, const std::string& location)
{
    const QUrl url{QString::fromStdString(location)};
    connection.setHostName(url.host());
    connection.setPort(url.port(5432));
    connection.setUserName(url.userName(QUrl::FullyDecoded));
    connection.setPassword(url.password(QUrl::FullyDecoded));
    connection.setDatabaseName(url.path(QUrl::FullyDecoded).mid(1));
    QStringList options{"connect_timeout=10"};
    for (const auto& [key, value] : QUrlQuery{url}.queryItems(QUrl::FullyDecoded)) {
        if (key == QLatin1String{"host"})
            connection.setHostName(value);
        else
            options.append(key + '=' + value);
    }
    connection.setConnectOptions(options.join(';'));
}

QString addConnection(const std::string& location)
{
    static std::atomic<int> count = 0;
    const auto name = QStringLiteral("stillgate-%1").arg(++count);
    if (isPostgreSQLLocation(location)) {
        auto connection = QSqlDatabase::addDatabase("QPSQL", name);
        describePostgreSQL(connection, location);
    } else {
        auto connection = QSqlDatabase::addDatabase("QSQLITE", name);
        connection.setDatabaseName(QString::fromStdString(location));
        connection.setConnectOptions("QSQLITE_BUSY_TIMEOUT=5000");
    }
    return name;
}

/// One for each SQLite file, until the process ends.
Turnstile* writersOf(const std::string& location)
{
    static std::mutex access;
    static std::map<std::string, Turnstile> writers;
    const std::scoped_lock lock{access};
    return isPostgreSQLLocation(location) ? nullptr : &writers[location];
}

} // namespace

DatabaseError::DatabaseError(const std::string& action, const QSqlError& error)
    : std::runtime_error(action + ": " + firstLine(error.databaseText()))
    , m_isConflict(isConflictCode(error.nativeErrorCode()))
    , m_isLostConnection(error.type() == QSqlError::ConnectionError || error.nativeErrorCode().startsWith("57P") ||
          error.nativeErrorCode().startsWith("08"))
{}

Database::Database(const std::string& location)
    : m_name(addConnection(location))
    , m_writers(writersOf(location))
{
    open();
}

Database::~Database()
{
    m_prepared.clear();
    QSqlDatabase::database(m_name, false).close();
    QSqlDatabase::removeDatabase(m_name);
}

bool Database::isPostgreSQL() const
{
    return QSqlDatabase::database(m_name, false).driverName() == QLatin1String{"QPSQL"};
}

void Database::open()
{
    auto connection = QSqlDatabase::database(m_name, false);
    if (!connection.open())
        throw DatabaseError{"Can't open the database", connection.lastError()};
    m_isLost = false;
    if (isPostgreSQL()) {
        command("SET client_min_messages TO warning");
        return;
    }
    command("PRAGMA journal_mode = WAL");
    command("PRAGMA synchronous = FULL"); // an acknowledged write outlives a power cut
    command("PRAGMA foreign_keys = ON");
    command("PRAGMA secure_delete = ON");
}

void Database::reopenIfLost()
{
    if (!m_isLost)
        return;
    m_prepared.clear();
    QSqlDatabase::database(m_name, false).close();
    open();
}

void Database::command(const std::string& statement)
{
    QSqlQuery query{QSqlDatabase::database(m_name, false)};
    if (!query.exec(QString::fromStdString(statement)))
        throw failureOf(statement, query);
}

DatabaseError Database::failureOf(const std::string& statement, const QSqlQuery& query)
{
    DatabaseError error{"Can't run \"" + statement + '"', query.lastError()};
    m_isLost = m_isLost || error.isLostConnection();
    return error;
}

QSqlQuery& Database::run(const std::string& statement, const std::vector<QVariant>& values)
{
    auto found = m_prepared.find(statement);
    if (found == m_prepared.end()) {
        QSqlQuery query{QSqlDatabase::database(m_name, false)};
        query.setForwardOnly(true);
        if (!query.prepare(QString::fromStdString(statement)))
            throw failureOf(statement, query);
        found = m_prepared.emplace(statement, std::move(query)).first;
    }
    auto& query = found->second;
    for (int position = 0; position < static_cast<int>(values.size()); ++position)
        query.bindValue(position, values[static_cast<std::size_t>(position)]);
    if (!query.exec()) {
        const auto error = failureOf(statement, query);
        query.finish();
        throw error;
    }
    return query;
}

std::unique_lock<Turnstile> Database::writersTurn() const
{
    // SQLite has one writer at a time. Whoever finds another one there sleeps, longer each time up to a tenth of a
    // second, however short the other's transaction is: threads of one process better wake each other.
    return m_writers == nullptr ? std::unique_lock<Turnstile>{} : std::unique_lock{*m_writers};
}

const char* Database::writing() const
{
    // SQLite has one writer at a time: it is better to wait for the turn now than to fail half way.
    return isPostgreSQL() ? "BEGIN ISOLATION LEVEL SERIALIZABLE" : "BEGIN IMMEDIATE";
}

const char* Database::reading() const
{
    return isPostgreSQL() ? "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY" : "BEGIN DEFERRED";
}

void Database::rollBack()
{
    try {
        command("ROLLBACK");
    } catch (const DatabaseError&) {
        m_isLost = true; // whatever state the connection is in, the next transaction gets a new one
    }
}

void Database::pauseBeforeAttempt(int attempt)
{
    thread_local std::minstd_rand randomness{std::random_device{}()};
    std::uniform_int_distribution<int> milliseconds{1, std::min(5 * attempt, 50)};
    std::this_thread::sleep_for(std::chrono::milliseconds{milliseconds(randomness)});
}

bool Database::wipeDeleted()
{
    // SQLite overwrites what it deletes (secure_delete), but the log before the last checkpoint still holds it.
    if (isPostgreSQL())
        return true;
    const auto turn = writersTurn();
    command("PRAGMA busy_timeout = 1000"); // readers hold nobody up for longer
    const auto isBusy = first<bool>("PRAGMA wal_checkpoint(TRUNCATE)");
    command("PRAGMA busy_timeout = 5000");
    return isBusy == false;
}

} // namespace stillgate::server
