// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/WebAd.h"

#include "platform/FileStore.h"
#include "service/BannerImages.h"
#include "service/PageText.h"
#include "strip/Banner.h"
#include "support/RuntimeError.h"

#include <QContextMenuEvent>
#include <QTextDocument>
#include <QWheelEvent>

namespace {

constexpr qint64 kLargestPage = 16LL * 1024 * 1024;

QUrl PictureName(qsizetype number)
{
    return QUrl(QStringLiteral("image:%1").arg(number));
}

} // namespace

WebAd::WebAd(Http& http, QWidget* parent)
    : QTextBrowser(parent)
    , m_http(http)
{
    setObjectName(QStringLiteral("WebAd"));
    setAccessibleName(QStringLiteral("Advertisement"));
    setOpenLinks(false);
    setAcceptDrops(false);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // A banner of 468 by 60 pixels just fits.
    setFrameShape(QFrame::NoFrame);
    document()->setDocumentMargin(0);
    setAttribute(Qt::WA_NoMousePropagation);
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& address) {
        if (m_link) {
            m_link(address.toString(QUrl::FullyEncoded));
        }
    });
}

WebAd::~WebAd() = default;

void WebAd::Navigate(const FileStore& files, const QString& path)
{
    const std::optional<QByteArray> bytes = files.Read(path, kLargestPage);
    if (!bytes) {
        throw RuntimeError(ErrorNumber::kInvalidCall, QStringLiteral("The page can't be read"));
    }
    const QByteArray page = PageText(*bytes).toUtf8();
    const std::optional<Banner> banner =
        CleanBanner({page.constData(), static_cast<std::size_t>(page.size())});
    if (!banner) {
        return;
    }
    QStringList addresses;
    for (const std::string& address : banner->images) {
        addresses << QString::fromStdString(address);
    }
    // Drops the pictures of the old page, also those that are still loading.
    m_images = std::make_unique<BannerImages>(m_http, addresses);
    m_images->SetRunning(isVisible());
    connect(m_images.get(), &BannerImages::Changed, this, &WebAd::TakePicture);
    // setHtml alone would keep the old pictures under the same names.
    document()->clear();
    setHtml(QString::fromStdString(banner->html));
}

void WebAd::TakePicture(qsizetype number, bool resized)
{
    document()->addResource(QTextDocument::ImageResource, PictureName(number), m_images->Picture(number));
    if (resized) {
        document()->markContentsDirty(0, document()->characterCount());
    }
    viewport()->update();
}

QVariant WebAd::loadResource(int type, const QUrl& name)
{
    // Always return a valid value: otherwise the document would open the file of that name.
    if (type != QTextDocument::ImageResource) {
        return QByteArray();
    }
    bool isNumber = false;
    const int number = name.path().toInt(&isNumber);
    const bool isOurs = m_images != nullptr && isNumber && name.scheme() == u"image";
    return isOurs ? m_images->Picture(number) : BannerImages::Dot();
}

void WebAd::wheelEvent(QWheelEvent* event)
{
    event->accept();
}

void WebAd::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
}

void WebAd::showEvent(QShowEvent* event)
{
    QTextBrowser::showEvent(event);
    if (m_images != nullptr) {
        m_images->SetRunning(true);
    }
}

void WebAd::hideEvent(QHideEvent* event)
{
    QTextBrowser::hideEvent(event);
    if (m_images != nullptr) {
        m_images->SetRunning(false);
    }
}
