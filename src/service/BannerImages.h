// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPixmap>
#include <QStringList>

#include <memory>
#include <vector>

class Http;

/// The pictures of one banner, loaded in the background and animated. A picture that is not loaded yet, too
/// large or invalid is a transparent dot.
class BannerImages final : public QObject
{
    Q_OBJECT

public:
    /// Limit for one picture: 1000 by 1000 pixels, or as many in another shape.
    static constexpr qint64 kMostPixels = 1'000'000;
    /// Limit for all pictures of a banner; a picture costs its pixels plus its bytes. A picture that costs
    /// more than is left is not shown. After a picture that takes too long to decode no other is shown.
    static constexpr qint64 kMostCost = 4'000'000;

    /// @param addresses http, https or data
    BannerImages(Http& http, const QStringList& addresses);
    ~BannerImages() override;

    [[nodiscard]] static QPixmap Dot();
    /// The current frame of a picture; the dot for an unknown number.
    [[nodiscard]] QPixmap Picture(qsizetype number) const;
    /// Resumes the animations or pauses them.
    void SetRunning(bool running);

signals:
    /// @p resized tells whether the size of the picture has changed.
    void Changed(qsizetype number, bool resized);

private:
    struct Image;

    void Start(qsizetype number, const QByteArray& bytes);
    [[nodiscard]] bool MayBeShown(Image& image) const;
    [[nodiscard]] int ShortestFrameMilliseconds() const;
    void ShowNextFrame(qsizetype number);

    std::vector<std::unique_ptr<Image>> m_images;
    qint64 m_cost = 0;
    bool m_running = true;
};
