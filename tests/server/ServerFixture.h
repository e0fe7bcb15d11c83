#pragma once

#include "Operation/Backend.h"
#include "Platform/Memory/ManualTime.h"
#include "Platform/Memory/MemoryLog.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace stillgate::test
{

/// An empty database of the test's own, of the kind that it is asked for.
class TestDatabase
{
public:
    enum class Kind { sqlite, postgresql };

    explicit TestDatabase(Kind kind);
    ~TestDatabase();

    TestDatabase(const TestDatabase&) = delete;
    TestDatabase& operator=(const TestDatabase&) = delete;

    [[nodiscard]] const std::string& location() const { return m_location; }

private:
    TemporaryFolder m_folder;
    std::string m_name; ///< of the database on the tests' PostgreSQL server
    std::string m_location;
};

/// Somebody with an account and a device that is signed in.
struct Person
{
    std::string id;
    std::string token;
    std::string refreshToken;
    std::string deviceId;
    std::string address = "192.0.2.1";
};

struct Reply
{
    int status = 0;
    nlohmann::json body;
};

/// The whole server but for its sockets, on both kinds of database.
class ServerTest : public testing::TestWithParam<TestDatabase::Kind>
{
protected:
    ServerTest();

    /// What the database holds is made without the web site: hashing passwords takes long.
    [[nodiscard]] Person signUp(const std::string& name, const std::string& timeZone = "UTC");

    Reply call(
        const Person& person, const std::string& method, const std::string& path, const nlohmann::json& body = nullptr);
    Reply call(const Person& person, const std::string& method, const std::string& path, const std::string& body);

    /// Makes the first the guardian of the second; gives the connection's id.
    std::string link(const Person& guardian, const Person& controlled);

    /// A task from one to the other, done and approved by its giver; gives its id.
    std::string earn(const Person& giver, const std::string& connectionId, const Person& worker, int minutes);

    TemporaryFolder folder;
    TestDatabase testDatabase{GetParam()};
    ManualTime time;
    MemoryLog log;
    server::Database database{testDatabase.location()};
    server::Backend backend;
};

#define STILLGATE_ON_BOTH_DATABASES(Suite)                                                                             \
    INSTANTIATE_TEST_SUITE_P(, Suite, testing::Values(TestDatabase::Kind::sqlite, TestDatabase::Kind::postgresql),     \
        [](const auto& parameter) { return parameter.param == TestDatabase::Kind::sqlite ? "SQLite" : "PostgreSQL"; })

} // namespace stillgate::test
