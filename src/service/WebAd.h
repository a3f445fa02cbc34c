// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTextBrowser>

#include <functional>
#include <memory>

class BannerImages;
class FileStore;
class Http;

/// Shows the page of the ad: a rich-text view without scripts, frames or access to files, which loads only
/// pictures and follows no links.
class WebAd final : public QTextBrowser
{
    Q_OBJECT

public:
    WebAd(Http& http, QWidget* parent);
    ~WebAd() override;

    /// Shows the page in a file, read as windows-1252 unless it names a known encoding. A page that would
    /// take too long to lay out is not shown, and the view keeps its page. Throws kInvalidCall if the file
    /// can't be read.
    void Navigate(const FileStore& files, const QString& path);
    /// @param handler gets the address of an activated link; must not throw
    void OnLink(std::function<void(const QString&)> handler) { m_link = std::move(handler); }

protected:
    QVariant loadResource(int type, const QUrl& name) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void TakePicture(qsizetype number, bool resized);

    Http& m_http;
    std::unique_ptr<BannerImages> m_images;
    std::function<void(const QString&)> m_link;
};
