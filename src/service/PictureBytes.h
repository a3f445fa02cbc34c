// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QIODevice>

#include <limits>

/// The file of a picture as the device of its reader, with a time limit. A small file can take minutes to
/// decode (pixels after the last one, thousands of progressive steps), and no reader limits that. But each
/// reads the file piece by piece, and gets no more bytes when its time is over.
class PictureBytes final : public QIODevice
{
public:
    explicit PictureBytes(const QByteArray& file);

    /// The format by the first bytes: "png", "gif", "jpeg" or "bmp"; empty for all others, which are not
    /// shown.
    [[nodiscard]] QByteArray Format() const { return m_format; }
    /// Limits the processor time of this thread from now on; until the first call there is no limit.
    void LimitTime(int milliseconds);
    /// Whether a read was refused since then, so that the picture is incomplete.
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
    double m_end = std::numeric_limits<double>::infinity();
    bool m_isOverdue = false;
};
