#include "Web/Page.h"

#include <QFile>

#include <array>

namespace stillgate::server
{

namespace
{

// THREAT: a page that another site frames, or into which it gets a script, approves devices in its user's name.
constexpr auto contentPolicy =
    "default-src 'none'; style-src 'self'; img-src 'self'; script-src 'self'; form-action 'self'; base-uri 'none'; "
    "frame-ancestors 'none'";

std::string contentTypeOf(const std::string& path)
{
    constexpr std::array<std::pair<std::string_view, std::string_view>, 3> types{{
        {".css", "text/css; charset=utf-8"},
        {".js", "text/javascript; charset=utf-8"},
        {".svg", "image/svg+xml"},
    }};
    for (const auto& [ending, type] : types) {
        if (path.ends_with(ending))
            return std::string{type};
    }
    return "application/octet-stream";
}

} // namespace

std::optional<std::string> siteFile(const std::string& path)
{
    QFile file{QString::fromStdString(":/stillgate-server/site/" + path)};
    if (path.find("..") != std::string::npos || !file.open(QFile::ReadOnly))
        return std::nullopt;
    return file.readAll().toStdString();
}

std::string renderedPage(const std::string& name, PageData data)
{
    using namespace kainjow::mustache;
    data.set("content", partial{[name] { return siteFile("pages/" + name + ".html").value(); }});
    mustache frame{siteFile("pages/layout.html").value()};
    auto html = frame.render(data);
    if (!frame.is_valid())
        throw std::logic_error{"A template is broken: " + frame.error_message()};
    return html;
}

Response htmlAnswer(std::string html, int status)
{
    return {.status = status,
        .contentType = "text/html; charset=utf-8",
        .body = std::move(html),
        .headers = {
            {"Content-Security-Policy", contentPolicy},
            {"Referrer-Policy", "same-origin"},
            {"X-Frame-Options", "DENY"},
            {"Cross-Origin-Opener-Policy", "same-origin"},
        }};
}

Response redirection(const std::string& path)
{
    return {.status = 303, .contentType = {}, .body = {}, .headers = {{"Location", path}}};
}

Response assetAnswer(const std::string& path)
{
    auto file = siteFile(path);
    if (!file)
        throw notFound();
    return {.status = 200,
        .contentType = contentTypeOf(path),
        .body = std::move(*file),
        .headers = {{"Cache-Control", "public, max-age=3600"},
            {"Content-Security-Policy",
                "default-src 'none'; "
                "style-src 'unsafe-inline'"}}};
}

} // namespace stillgate::server
