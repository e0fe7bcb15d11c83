#include "Backend/ServerTrust.h"

#include <openssl/bio.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

namespace stillgate
{

namespace
{

template <auto free>
struct Free
{
    template <class T>
    void operator()(T* object) const
    {
        free(object);
    }
};

using Certificate = std::unique_ptr<X509, Free<X509_free>>;
using Key = std::unique_ptr<EVP_PKEY, Free<EVP_PKEY_free>>;
using VerificationContext = std::unique_ptr<X509_STORE_CTX, Free<X509_STORE_CTX_free>>;

struct FreeStack
{
    void operator()(STACK_OF(X509) * stack) const { sk_X509_pop_free(stack, X509_free); }
};

using CertificateList = std::unique_ptr<STACK_OF(X509), FreeStack>;

Certificate fromDER(const std::string& der)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(der.data());
    return Certificate{d2i_X509(nullptr, &bytes, static_cast<long>(der.size()))};
}

Certificate fromPEM(const std::string& pem)
{
    const std::unique_ptr<BIO, Free<BIO_free>> input{BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size()))};
    return Certificate{PEM_read_bio_X509(input.get(), nullptr, nullptr, nullptr)};
}

PublicKey::Type typeOf(const EVP_PKEY* key)
{
    switch (EVP_PKEY_get_base_id(key)) {
    case EVP_PKEY_RSA:
        return PublicKey::Type::rsa;
    case EVP_PKEY_EC:
        return PublicKey::Type::ec;
    default:
        return PublicKey::Type::other;
    }
}

std::string externalForm(EVP_PKEY* key)
{
    unsigned char* bytes = nullptr;
    const int size = i2d_PublicKey(key, &bytes);
    if (size <= 0)
        return {};
    const std::unique_ptr<unsigned char, Free<[](void* memory) { OPENSSL_free(memory); }>> owned{bytes};
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

PublicKey publicKeyOf(const X509* certificate)
{
    const Key key{EVP_PKEY_dup(X509_get0_pubkey(certificate))};
    if (!key)
        return {};
    // A certificate may hold a compressed point; the pin is over the uncompressed one.
    if (typeOf(key.get()) == PublicKey::Type::ec)
        EVP_PKEY_set_utf8_string_param(key.get(), OSSL_PKEY_PARAM_EC_POINT_CONVERSION_FORMAT, "uncompressed");
    return {typeOf(key.get()), externalForm(key.get()), EVP_PKEY_get_bits(key.get())};
}

void requireServerOf(X509_STORE_CTX* context, const std::string& host)
{
    auto* parameters = X509_STORE_CTX_get0_param(context);
    X509_VERIFY_PARAM_set_purpose(parameters, X509_PURPOSE_SSL_SERVER);
    X509_VERIFY_PARAM_set_hostflags(parameters, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
    if (X509_VERIFY_PARAM_set1_ip_asc(parameters, host.c_str()) != 1) // no IP address, so a name
        X509_VERIFY_PARAM_set1_host(parameters, host.data(), host.size());
}

} // namespace

struct ServerTrust::Store
{
    std::unique_ptr<X509_STORE, Free<X509_STORE_free>> anchors{X509_STORE_new()};
};

ServerTrust::ServerTrust(std::optional<std::string> extraAnchor)
    : m_extraAnchor(std::move(extraAnchor))
{}

const ServerTrust::Store& ServerTrust::store() const
{
    if (m_store)
        return *m_store;
    m_store = std::make_unique<Store>();
    X509_STORE_set_default_paths(m_store->anchors.get());
    if (const auto anchor = m_extraAnchor ? fromPEM(*m_extraAnchor) : nullptr)
        X509_STORE_add_cert(m_store->anchors.get(), anchor.get());
    return *m_store;
}

ServerTrust::~ServerTrust() = default;

std::expected<std::vector<PublicKey>, std::string> ServerTrust::evaluate(
    const std::vector<std::string>& sentCertificates, const std::string& host) const
{
    const auto own = sentCertificates.empty() ? nullptr : fromDER(sentCertificates.front());
    if (!own || host.empty())
        return std::unexpected{"the server sent no certificate"};
    const CertificateList others{sk_X509_new_null()};
    for (std::size_t i = 1; i < sentCertificates.size(); ++i) {
        if (auto other = fromDER(sentCertificates[i]))
            sk_X509_push(others.get(), other.release());
    }

    const VerificationContext context{X509_STORE_CTX_new()};
    X509_STORE_CTX_init(context.get(), store().anchors.get(), own.get(), others.get());
    requireServerOf(context.get(), host);
    if (X509_verify_cert(context.get()) != 1)
        return std::unexpected{X509_verify_cert_error_string(X509_STORE_CTX_get_error(context.get()))};

    std::vector<PublicKey> keys;
    const auto* chain = X509_STORE_CTX_get0_chain(context.get());
    for (int i = 0; i < sk_X509_num(chain); ++i)
        keys.push_back(publicKeyOf(sk_X509_value(chain, i)));
    return keys;
}

} // namespace stillgate
