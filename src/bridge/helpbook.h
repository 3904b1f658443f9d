#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

// The manual's chapters and the maker's credit, for the help view and the about panel.
class HelpBook : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    // The chapters in order, each a map of "title", "symbol" and "text".
    Q_PROPERTY(QVariantList chapters READ chapters CONSTANT FINAL)
    // "Quillfern"
    Q_PROPERTY(QString company READ company CONSTANT FINAL)
    // "Coinhall by Quillfern"
    Q_PROPERTY(QString fullName READ fullName CONSTANT FINAL)
    // "Coinhall by Quillfern · QFS"
    Q_PROPERTY(QString aboutLine READ aboutLine CONSTANT FINAL)
    // The maker's web site.
    Q_PROPERTY(QUrl website READ website CONSTANT FINAL)
    // The web site's domain as people write it ("quillfern.com").
    Q_PROPERTY(QString websiteText READ websiteText CONSTANT FINAL)
    // The program's name as the window and menus show it: "QFS Coinhall".
    Q_PROPERTY(QString appName READ appName CONSTANT FINAL)

public:
    explicit HelpBook(QObject *parent = nullptr);

    QVariantList chapters() const;
    QString company() const;
    QString fullName() const;
    QString aboutLine() const;
    QUrl website() const;
    QString websiteText() const;
    QString appName() const;
};
