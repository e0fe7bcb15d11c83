#pragma once

#include "Platform/Pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace stillgate
{

/// The clipboard that is pasted from by command. What is merely selected stays as it is. Needs a QGuiApplication.
class ClipboardPasteboard final : public Pasteboard
{
public:
    void setString(const std::string& text) override
    {
        QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    }
};

} // namespace stillgate
