#pragma once

#include "HTTP/Message.h"
#include "Texts/Texts.h"

#include <kainjow/mustache.hpp>
#include <string>

namespace stillgate::server
{

/// The values of a page's template. What isn't set is left out of the page; an empty text would count as present.
using PageData = kainjow::mustache::data;

/// A file of the web site, from the program's resources; nothing if there is none.
[[nodiscard]] std::optional<std::string> siteFile(const std::string& path);

/// The page with its frame, as HTML: every value is escaped.
[[nodiscard]] std::string renderedPage(const std::string& name, PageData data);

/// With the headers that keep a page from being framed, sniffed, stored, or from running what isn't ours.
[[nodiscard]] Response htmlAnswer(std::string html, int status);

/// After a form: the browser gets the other page, and repeating it repeats nothing (RFC 9110, 15.4.4).
[[nodiscard]] Response redirection(const std::string& path);

/// A file of the folder "assets".
[[nodiscard]] Response assetAnswer(const std::string& path);

} // namespace stillgate::server
