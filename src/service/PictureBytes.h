// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QIODevice>

#include <ctime>

/// A picture's file for its reader. A small file can hold minutes of decoding (pixels behind the last one,
/// thousands of steps), and no reader limits them; each asks for more bytes on the way, and gets none once
/// its time is over.
class PictureBytes final : public QIODevice
{
public:
    explicit PictureBytes(const QByteArray& file);

    /// One of the formats that are shown, "png", "gif", "jpeg" or "bmp", by the first bytes; empty for all
    /// others.
    [[nodiscard]] QByteArray Format() const { return m_format; }
    /// Limits the processor time from now on; until the first call there is no limit.
    void Allow(int milliseconds);
    /// Whether bytes were refused since then, so that the picture is not whole.
    [[nodiscard]] bool IsOverdue() const { return m_isOverdue; }

    [[nodiscard]] qint64 size() const override { return m_bytes.size(); }
    bool seek(qint64 position) override;

protected:
    qint64 readData(char* data, qint64 most) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    QByteArray m_format;
    QByteArray m_bytes;
    qint64 m_at = 0;
    std::clock_t m_start = 0;
    std::clock_t m_limit = 0;
    bool m_isOverdue = false;
};
