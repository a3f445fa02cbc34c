// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ContactSheet.h"
#include "Icon.h"
#include "Pictures.h"

#include <QDir>
#include <QGuiApplication>
#include <QSaveFile>

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <vector>

namespace {

void Write(const QString& path, const QByteArray& content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit()) {
        throw std::runtime_error("cannot write " + path.toStdString());
    }
}

void WritePng(const QString& path, QImage image)
{
    // The file contains the resolution, which would otherwise be that of the screen in use.
    constexpr int kDotsPerMetre = 3780;
    image.setDotsPerMeterX(kDotsPerMetre);
    image.setDotsPerMeterY(kDotsPerMetre);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG", 0) || !file.commit()) {
        throw std::runtime_error("cannot write " + path.toStdString());
    }
}

void WritePictures(const QDir& folder)
{
    for (const int scale : art::kScales) {
        for (const art::Picture& picture : art::PicturesAt(scale)) {
            WritePng(folder.filePath(art::PictureFileName(picture.name, scale)),
                     picture.image.convertToFormat(QImage::Format_RGB888));
        }
    }
}

QByteArray Read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("cannot read " + path.toStdString());
    }
    return file.readAll();
}

void WriteIcons(const QDir& folder)
{
    std::vector<QByteArray> pngFiles;
    for (const int size : art::kIconSizes) {
        const QString path = folder.filePath(QStringLiteral("duskbeacon-%1.png").arg(size));
        WritePng(path, art::Icon(size).convertToFormat(QImage::Format_ARGB32));
        pngFiles.push_back(Read(path));
    }
    Write(folder.filePath(QStringLiteral("duskbeacon.ico")), art::IconFile(pngFiles));
    Write(folder.filePath(QStringLiteral("duskbeacon.svg")), art::IconAsSvg(art::IconDetail::Full));
    Write(folder.filePath(QStringLiteral("duskbeacon-small.svg")),
          art::IconAsSvg(art::IconDetail::Simplified));
}

int Run(const QStringList& arguments)
{
    if (arguments.size() == 4 && arguments[1] == QLatin1String("--contact-sheet")) {
        WritePng(arguments[3], art::ContactSheet(arguments[2].toInt()));
        return 0;
    }
    if (arguments.size() != 3) {
        std::fputs("usage: duskbeacon_art PICTURES_FOLDER ICONS_FOLDER\n"
                   "       duskbeacon_art --contact-sheet SCALE FILE\n",
                   stderr);
        return 2;
    }
    WritePictures(QDir(arguments[1]));
    WriteIcons(QDir(arguments[2]));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const QGuiApplication application(argc, argv);
        return Run(QGuiApplication::arguments());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "duskbeacon_art: %s\n", error.what());
        return 1;
    }
}
