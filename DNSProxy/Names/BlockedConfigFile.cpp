#include "Names/BlockedConfigFile.h"

#include "Platform/Text.h"

#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/src.hpp> // the library itself, which is compiled into this file alone
#include <cerrno>
#include <unistd.h>

namespace stillgate::dns
{

namespace
{

namespace json = boost::json;
using ErrorCode = boost::system::error_code;

/// The events of a JSON text. Every one says whether the parser goes on.
class Collector
{
public:
    constexpr static std::size_t max_object_size = std::size_t(-1); // NOLINT(readability-identifier-naming)
    constexpr static std::size_t max_array_size = std::size_t(-1);  // NOLINT(readability-identifier-naming)
    constexpr static std::size_t max_key_size = std::size_t(-1);    // NOLINT(readability-identifier-naming)
    constexpr static std::size_t max_string_size = std::size_t(-1); // NOLINT(readability-identifier-naming)

    Collector(const NameKey& key, std::size_t expectedBytes)
        : m_key(key)
    {
        // The shortest entry has four characters, so the list never moves. What isn't written to takes no memory.
        constexpr std::size_t shortestEntry = 4;
        names.hashes.reserve(std::min(expectedBytes / shortestEntry, BlockedConfigParser::mostNames));
    }

    HashedNames names;
    bool hasList = false;

    // The names of these functions are the library's.
    // NOLINTBEGIN(readability-identifier-naming)
    bool on_document_begin(ErrorCode&) { return true; }

    bool on_document_end(ErrorCode&) { return true; }

    bool on_object_begin(ErrorCode& error) { return open(error, false); }

    bool on_object_end(std::size_t, ErrorCode&) { return close(); }

    bool on_array_begin(ErrorCode& error) { return open(error, true); }

    bool on_array_end(std::size_t, ErrorCode&) { return close(); }

    bool on_key_part(json::string_view part, std::size_t, ErrorCode&) { return collect(part); }

    bool on_key(json::string_view part, std::size_t, ErrorCode&)
    {
        collect(part);
        m_isListNext = m_depth == 1 && m_text == "domains";
        m_text.clear();
        return true;
    }

    bool on_string_part(json::string_view part, std::size_t, ErrorCode&) { return !isInList() || collect(part); }

    bool on_string(json::string_view part, std::size_t, ErrorCode& error)
    {
        if (!isInList())
            return isPlainValueFine(error);
        if (m_text.empty())
            return add(part, error);
        collect(part);
        const bool goesOn = add(m_text, error);
        m_text.clear();
        return goesOn;
    }

    bool on_number_part(json::string_view, ErrorCode&) { return true; }

    bool on_int64(std::int64_t, json::string_view, ErrorCode& error) { return isPlainValueFine(error); }

    bool on_uint64(std::uint64_t, json::string_view, ErrorCode& error) { return isPlainValueFine(error); }

    bool on_double(double, json::string_view, ErrorCode& error) { return isPlainValueFine(error); }

    bool on_bool(bool, ErrorCode& error) { return isPlainValueFine(error); }

    bool on_null(ErrorCode& error) { return isPlainValueFine(error); }

    bool on_comment_part(json::string_view, ErrorCode&) { return true; }

    bool on_comment(json::string_view, ErrorCode&) { return true; }

    // NOLINTEND(readability-identifier-naming)

private:
    [[nodiscard]] bool isInList() const { return m_listDepth != 0 && m_depth == m_listDepth; }

    static bool refuse(ErrorCode& error)
    {
        error = boost::system::errc::make_error_code(boost::system::errc::invalid_argument);
        return false;
    }

    /// A list of lists is no list of names, and the value of the file is an object.
    bool open(ErrorCode& error, bool isArray)
    {
        const bool isWrong = (m_depth == 0 && isArray) || isInList() || (m_isListNext && !isArray);
        if (isWrong)
            return refuse(error);
        ++m_depth;
        if (std::exchange(m_isListNext, false)) {
            m_listDepth = m_depth;
            hasList = true;
        }
        return true;
    }

    bool close()
    {
        if (m_depth == m_listDepth)
            m_listDepth = 0;
        --m_depth;
        return true;
    }

    /// A value that is neither a list nor an object, nor an entry of the list.
    bool isPlainValueFine(ErrorCode& error) const { return m_isListNext || isInList() ? refuse(error) : true; }

    /// A text can come in parts. Beyond what a name can be it isn't kept.
    bool collect(json::string_view part)
    {
        if (m_text.size() <= DomainName::longestName)
            m_text.append(part.data(), std::min(part.size(), DomainName::longestName + 1));
        return true;
    }

    bool add(std::string_view entry, ErrorCode& error)
    {
        const auto name = DomainName::fromText(trimmed(entry));
        if (!name || name->isSingleLabel()) {
            ++names.skipped;
            return true;
        }
        if (names.hashes.size() == BlockedConfigParser::mostNames)
            return refuse(error);
        names.hashes.push_back(m_key.hash(name->wire()));
        return true;
    }

    NameKey m_key;
    std::string m_text;
    std::size_t m_depth = 0;
    std::size_t m_listDepth = 0; ///< 0 outside the list of the domains
    bool m_isListNext = false;
};

std::unexpected<Error> broken(std::string why)
{
    return failure(DecodingFailure{"blocked-config.json", std::move(why)});
}

} // namespace

struct BlockedConfigParser::Machinery
{
    json::basic_parser<Collector> parser;
    ErrorCode error;
};

BlockedConfigParser::BlockedConfigParser(const NameKey& key, std::size_t expectedBytes)
    : m_machinery(new Machinery{.parser{json::parse_options{}, key, expectedBytes}, .error = {}})
{}

BlockedConfigParser::~BlockedConfigParser() = default;

bool BlockedConfigParser::read(std::string_view part)
{
    auto& [parser, error] = *m_machinery;
    // What is left over stands behind the end of the object.
    if (!error && parser.write_some(true, part.data(), part.size(), error) < part.size() && !error)
        error = json::make_error_code(json::error::extra_data);
    return !error;
}

Result<HashedNames> BlockedConfigParser::finish()
{
    auto& [parser, error] = *m_machinery;
    if (!error)
        parser.write_some(false, "", 0, error);
    if (error)
        return broken("no list of texts under \"domains\" in an object of JSON");
    auto& collector = parser.handler();
    if (!collector.hasList)
        return broken("no \"domains\"");
    collector.names.hashes.shrink_to_fit();
    return std::move(collector.names);
}

Result<HashedNames> readBlockedConfig(int descriptor, std::uint64_t size, const NameKey& key)
{
    BlockedConfigParser parser{key, size};
    std::string part(std::size_t{64} * 1024, '\0');
    for (std::uint64_t total = 0;;) {
        const auto got = ::read(descriptor, part.data(), part.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return failure(SystemFailure{"read blocked-config.json", errno});
        if (got == 0)
            return parser.finish();
        total += static_cast<std::uint64_t>(got);
        if (total > largestConfig)
            return broken("larger than 256 MB");
        if (!parser.read(std::string_view{part}.substr(0, static_cast<std::size_t>(got))))
            return parser.finish();
    }
}

} // namespace stillgate::dns
