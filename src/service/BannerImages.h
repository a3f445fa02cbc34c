// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPixmap>
#include <QStringList>

#include <memory>
#include <vector>

class Http;

/// The pictures of one banner: loaded in the background, animated ones running. A picture that is not there
/// yet, is too large or is none is a transparent dot.
class BannerImages final : public QObject
{
    Q_OBJECT

public:
    /// Limit for one picture: 1000 by 1000, or as many pixels in another shape.
    static constexpr qint64 kMostPixels = 1'000'000;
    /// Limit for the pictures of a banner together; a picture costs its pixels and its bytes. One that costs
    /// more than is left is not shown, and none is shown after one that takes too long to decode.
    static constexpr qint64 kMostCost = 4'000'000;

    /// @param addresses http, https or data
    BannerImages(Http& http, const QStringList& addresses);
    ~BannerImages() override;

    [[nodiscard]] static QPixmap Dot();
    /// The picture as it is to be shown now; the dot for a number that no picture has.
    [[nodiscard]] QPixmap Picture(qsizetype number) const;
    /// Animations stand still while @p running is false.
    void SetRunning(bool running);

signals:
    /// @p resized tells whether the place that the picture needs has changed.
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
