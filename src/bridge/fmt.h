#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// Money and date texts for QML. Amounts cross into QML as exact decimal text
// ("-45.1") and come back out as display text, so QML never does money arithmetic.
class Fmt : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit Fmt(QObject *parent = nullptr);

    // Currency text of a decimal ("-$45.10"); empty when the text is not a number.
    Q_INVOKABLE QString money(const QString &decimalText) const;
    // As money(), with "+" before amounts above zero.
    Q_INVOKABLE QString signedMoney(const QString &decimalText) const;
    // What the user typed as canonical decimal text ("(45.10)" gives "-45.1"); empty when it is no amount.
    Q_INVOKABLE QString parse(const QString &typed) const;
    // Whether the decimal text is below zero; false for text that is not a number.
    Q_INVOKABLE bool isNegative(const QString &decimalText) const;
    // Medium date in the user's locale ("Mar 4, 2025") of milliseconds since the epoch.
    Q_INVOKABLE QString date(double msecs) const;
    // Month and day ("Mar 4").
    Q_INVOKABLE QString shortDate(double msecs) const;
    // Month and year ("March 2025").
    Q_INVOKABLE QString month(double msecs) const;
};
