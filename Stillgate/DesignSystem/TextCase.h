#pragma once

#include <QLocale>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace stillgate
{

/// Changes of case in the language of the application (QLocale::setDefault): in Turkish, "i" becomes "İ".
class TextCase : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    Q_INVOKABLE static QString upperCase(const QString& text) { return QLocale().toUpper(text); }
};

} // namespace stillgate
