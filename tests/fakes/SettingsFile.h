// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QRegularExpression>
#include <QString>

#include <initializer_list>
#include <utility>

/// The text of a whole, valid settings.xml with two places, for tests that change it before they write it.
[[nodiscard]] inline QString SettingsText()
{
    return QStringLiteral(R"(<?xml version="1.0"?>
<root>
  <app FirstRun="false" pid="P-77" dist="dbeacon">
    <DefaultAd Ad="PGI+RHVzayBCZWFjb248L2I+"/>
    <version remind=""/>
  </app>
  <locations Current="Chicago">
    <Chicago atlas_id="US-1" city="Chicago" state="Illinois" longitude="87.65 W" longitude_final="-87.65" latitude="41.85 N" latitude_final="41.85" time_zone2="-6"/>
    <Makkah atlas_id="SA-1" city="Makkah" state="Saudi Arabia" longitude="39.83 E" longitude_final="39.83" latitude="21.42 N" latitude_final="21.42" time_zone2="3"/>
  </locations>
  <alerts angle1="-15" angle2="-15" method="ISNA" useAdvWarn="false" advWarn="10" asrMethode="shafi" useDLS="false" hourmode="24" mobileEnabled="false" mobileDID="" mobilePC="" mobileConfirm="0">
    <fajr enabled="true" popup="true" mobil="false" play="false" audioFile=""/>
    <shuruq enabled="false" popup="true" mobil="false" play="false" audioFile=""/>
    <duhr enabled="true" popup="true" mobil="false" play="false" audioFile=""/>
    <asr enabled="true" popup="true" mobil="false" play="false" audioFile=""/>
    <maghrib enabled="true" popup="true" mobil="false" play="false" audioFile=""/>
    <isha enabled="true" popup="true" mobil="false" play="false" audioFile=""/>
  </alerts>
</root>
)");
}

/// The same text with other values of the named attributes, wherever it has them.
[[nodiscard]] inline QString
SettingsWith(std::initializer_list<std::pair<const char*, const char*>> attributesAndValues)
{
    QString text = SettingsText();
    for (const auto& [attribute, value] : attributesAndValues) {
        const QString name = QString::fromUtf8(attribute);
        const QRegularExpression present(QStringLiteral("\\b%1=\"[^\"]*\"").arg(name));
        if (!text.contains(present)) {
            qFatal("settings.xml has no %s", attribute);
        }
        text.replace(present, QStringLiteral("%1=\"%2\"").arg(name, QString::fromUtf8(value)));
    }
    return text;
}

/// Writes settings.xml into the working directory.
inline void WriteSettings(const QString& text = SettingsText())
{
    QFile file(QStringLiteral("settings.xml"));
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("settings.xml can't be written");
    }
    file.write(text.toUtf8());
}

/// The bytes of settings.xml in the working directory.
[[nodiscard]] inline QByteArray ReadSettings()
{
    QFile file(QStringLiteral("settings.xml"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
