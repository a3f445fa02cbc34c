// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QProcess>
#include <QSettings>

#include <gtest/gtest.h>

namespace {

// The user's own decimal sign, where Windows keeps it; restored at the end.
class WindowsRegionTest : public testing::Test
{
protected:
    ~WindowsRegionTest() override
    {
        m_before.isNull() ? m_settings.remove(kSign) : m_settings.setValue(kSign, m_before);
    }
    void SetSign(const QString& sign)
    {
        m_settings.setValue(kSign, sign);
        m_settings.sync();
    }

private:
    static inline const QString kSign = QStringLiteral("sDecimal");
    QSettings m_settings{QStringLiteral("HKEY_CURRENT_USER\\Control Panel\\International"),
                         QSettings::NativeFormat};
    QVariant m_before = m_settings.value(kSign);
};

// One process for each sign: a process reads the settings once.
TEST_F(WindowsRegionTest, pointedTextOfAFile_readsAsItsNumber)
{
    for (const char* const sign : {",", "."}) {
        SetSign(QLatin1String(sign));
        QProcess process;
        process.start(QStringLiteral(DUSKBEACON_REGION), QStringList());
        ASSERT_TRUE(process.waitForFinished(20'000));
        EXPECT_EQ(QString::fromUtf8(process.readAllStandardOutput()).trimmed(),
                  QStringLiteral("[%1] 41.12 -87.65 -18 41.12").arg(QLatin1String(sign)));
    }
}

} // namespace
