#include "Operation/Certificates.h"

#include <QHostAddress>

#include <array>
#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>
#include <stdexcept>

namespace stillgate::server
{

namespace
{

constexpr long day = 24 * 60 * 60;
constexpr long authorityLifetime = 3650 * day;
constexpr long serverLifetime = 397 * day; // what applications accept at most

template <auto release>
struct Release
{
    template <class T>
    void operator()(T* object) const
    {
        release(object);
    }
};

using Bio = std::unique_ptr<BIO, Release<BIO_free_all>>;
using Certificate = std::unique_ptr<X509, Release<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Release<X509_EXTENSION_free>>;
using Names = std::unique_ptr<GENERAL_NAMES, Release<GENERAL_NAMES_free>>;

/// What libcrypto gives where it has failed is null.
template <class T>
T* checked(T* object)
{
    if (object == nullptr)
        throw std::runtime_error{"libcrypto can't make or read a key or certificate"};
    return object;
}

void check(int result)
{
    if (result <= 0)
        throw std::runtime_error{"libcrypto can't make a certificate"};
}

Bio reading(const std::string& text)
{
    return Bio{checked(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())))};
}

std::string textOf(BIO* bio)
{
    char* bytes = nullptr;
    const auto size = BIO_get_mem_data(bio, &bytes);
    return {bytes, static_cast<std::size_t>(size)};
}

std::string pemOf(X509* certificate)
{
    const Bio bio{checked(BIO_new(BIO_s_mem()))};
    check(PEM_write_bio_X509(bio.get(), certificate));
    return textOf(bio.get());
}

Certificate certificateOf(const std::string& pem)
{
    return Certificate{checked(PEM_read_bio_X509(reading(pem).get(), nullptr, nullptr, nullptr))};
}

void addExtension(X509* certificate, X509* issuer, int kind, const std::string& value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const Extension extension{checked(X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()))};
    check(X509_add_ext(certificate, extension.get(), -1));
}

/// A certificate of this name, key and lifetime, to be signed.
Certificate draft(const std::string& name, EVP_PKEY* key, long lifetime)
{
    Certificate certificate{checked(X509_new())};
    check(X509_set_version(certificate.get(), X509_VERSION_3));
    std::array<unsigned char, 16> serial{};
    check(RAND_bytes(serial.data(), serial.size()));
    serial[0] = (serial[0] & 0x7F) | 0x40; // positive, and of full length
    const std::unique_ptr<BIGNUM, Release<BN_free>> number{checked(BN_bin2bn(serial.data(), serial.size(), nullptr))};
    checked(BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(certificate.get())));
    checked(X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -day)); // clocks differ
    checked(X509_gmtime_adj(X509_getm_notAfter(certificate.get()), lifetime));
    check(X509_set_pubkey(certificate.get(), key));
    check(X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
        reinterpret_cast<const unsigned char*>(name.data()), static_cast<int>(name.size()), -1, 0));
    return certificate;
}

bool isIPAddress(const std::string& host)
{
    return !QHostAddress{QString::fromStdString(host)}.isNull();
}

void checkHost(const std::string& host)
{
    const auto isAllowed = [](unsigned char letter) {
        return std::isalnum(letter) != 0 || letter == '.' || letter == '-' || letter == ':';
    };
    if (host.empty() || !std::ranges::all_of(host, isAllowed))
        throw std::runtime_error{"\"" + host + "\" is neither a host name nor an IP address"};
}

} // namespace

ServerKey::ServerKey(EVP_PKEY* key)
    : m_key(checked(key), EVP_PKEY_free)
{}

ServerKey ServerKey::generate()
{
    return ServerKey{EVP_EC_gen("P-256")};
}

ServerKey ServerKey::fromPEM(const std::string& pem)
{
    return ServerKey{PEM_read_bio_PrivateKey(reading(pem).get(), nullptr, nullptr, nullptr)};
}

std::string ServerKey::pem() const
{
    const Bio bio{checked(BIO_new(BIO_s_mem()))};
    check(PEM_write_bio_PrivateKey(bio.get(), m_key.get(), nullptr, nullptr, 0, nullptr, nullptr));
    return textOf(bio.get());
}

std::string ServerKey::pin() const
{
    unsigned char* bytes = nullptr;
    const int size = i2d_PUBKEY(m_key.get(), &bytes);
    check(size);
    std::array<unsigned char, 32> digest{};
    check(EVP_Digest(bytes, static_cast<std::size_t>(size), digest.data(), nullptr, EVP_sha256(), nullptr));
    OPENSSL_free(bytes);
    std::array<unsigned char, 45> text{};
    const int length = EVP_EncodeBlock(text.data(), digest.data(), digest.size());
    return {reinterpret_cast<const char*>(text.data()), static_cast<std::size_t>(length)};
}

std::string authorityCertificate(const ServerKey& key, const std::string& name)
{
    const auto certificate = draft(name, key.get(), authorityLifetime);
    check(X509_set_issuer_name(certificate.get(), X509_get_subject_name(certificate.get())));
    addExtension(certificate.get(), certificate.get(), NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
    addExtension(certificate.get(), certificate.get(), NID_key_usage, "critical,keyCertSign,cRLSign");
    addExtension(certificate.get(), certificate.get(), NID_subject_key_identifier, "hash");
    check(X509_sign(certificate.get(), key.get(), EVP_sha256()));
    return pemOf(certificate.get());
}

std::string serverCertificate(const ServerKey& key, const std::vector<std::string>& hosts,
    const std::string& authorityPEM, const ServerKey& authorityKey)
{
    std::string names;
    for (const auto& host : hosts) {
        checkHost(host);
        names += (names.empty() ? "" : ",") + std::string{isIPAddress(host) ? "IP:" : "DNS:"} + host;
    }
    const auto authority = certificateOf(authorityPEM);
    constexpr std::size_t longestCommonName = 64; // it is the alternative names that count
    const std::string name = hosts.at(0).size() <= longestCommonName ? hosts.at(0) : "stillgate-server";
    const auto certificate = draft(name, key.get(), serverLifetime);
    check(X509_set_issuer_name(certificate.get(), X509_get_subject_name(authority.get())));
    addExtension(certificate.get(), authority.get(), NID_basic_constraints, "critical,CA:FALSE");
    addExtension(certificate.get(), authority.get(), NID_key_usage, "critical,digitalSignature");
    addExtension(certificate.get(), authority.get(), NID_ext_key_usage, "serverAuth");
    addExtension(certificate.get(), authority.get(), NID_subject_alt_name, names);
    addExtension(certificate.get(), authority.get(), NID_authority_key_identifier, "keyid:always");
    check(X509_sign(certificate.get(), authorityKey.get(), EVP_sha256()));
    return pemOf(certificate.get());
}

std::vector<std::string> hostsOf(const std::string& certificatePEM)
{
    const auto certificate = certificateOf(certificatePEM);
    const Names names{
        static_cast<GENERAL_NAMES*>(X509_get_ext_d2i(certificate.get(), NID_subject_alt_name, nullptr, nullptr))};
    std::vector<std::string> hosts;
    for (int position = 0; position < sk_GENERAL_NAME_num(names.get()); ++position) {
        const auto* name = sk_GENERAL_NAME_value(names.get(), position);
        const auto* bytes = name->type == GEN_DNS ? name->d.dNSName : name->d.iPAddress;
        const auto* data = ASN1_STRING_get0_data(bytes);
        if (name->type == GEN_DNS)
            hosts.emplace_back(
                reinterpret_cast<const char*>(data), static_cast<std::size_t>(ASN1_STRING_length(bytes)));
        else if (ASN1_STRING_length(bytes) == 4)
            hosts.push_back(
                QHostAddress{quint32{data[0]} << 24 | quint32{data[1]} << 16 | quint32{data[2]} << 8 | data[3]}
                    .toString()
                    .toStdString());
        else
            hosts.push_back(QHostAddress{data}.toString().toStdString());
    }
    return hosts;
}

std::chrono::days daysLeft(const std::string& certificatePEM, Date now)
{
    const auto certificate = certificateOf(certificatePEM);
    std::tm end{};
    check(ASN1_TIME_to_tm(X509_get0_notAfter(certificate.get()), &end));
    const auto left = std::chrono::system_clock::from_time_t(::timegm(&end)) - now;
    return std::chrono::floor<std::chrono::days>(left);
}

} // namespace stillgate::server
