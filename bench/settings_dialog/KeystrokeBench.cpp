// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "LimitReporter.h"
#include "fakes/FakeMain.h"
#include "fakes/FakePlatform.h"
#include "fakes/MemoryFiles.h"
#include "forms/Forms.h"
#include "settings_dialog/FrmAlerts.h"
#include "settings_dialog/MobileSignup.h"
#include "store/Configuration.h"
#include "store/XmlText.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QTest>

#include <benchmark/benchmark.h>

namespace {

// The settings dialog with the shipped settings file.
class ShippedDialog
{
public:
    explicit ShippedDialog(bool onDisk)
        : m_files(onDisk ? static_cast<FileStore&>(m_platform.files) : m_memory)
    {
        QFile shipped(QStringLiteral(DUSKBEACON_SHIPPED_SETTINGS));
        if (!shipped.open(QIODevice::ReadOnly) || !m_files.Write(kSettingsFile, shipped.readAll())) {
            qFatal("The shipped settings.xml can't be put in place");
        }
        m_forms.Register(FrmAlerts::kName, [this] { return std::make_unique<FrmAlerts>(m_forms, m_signup); });
        m_forms.SetMain(m_main);
    }
    [[nodiscard]] QByteArray Settings() const
    {
        return m_files.Read(kSettingsFile, XmlLimits::kBytes).value_or(QByteArray());
    }
    FrmAlerts& Open(std::int16_t tab)
    {
        auto& dialog = m_forms.Touch<FrmAlerts>();
        dialog.Show();
        dialog.SelectTab(1);
        dialog.SelectTab(tab);
        return dialog;
    }

private:
    FakePlatform m_platform;
    MemoryFiles m_memory;
    FileStore& m_files;
    Platform m_interfaces = m_platform.With(m_files, m_platform.http);
    Forms m_forms{m_interfaces};
    MobileSignup m_signup{m_forms};
    SilentMain m_main;
};

// One key in the path of an audio file: loads, changes and saves the whole file.
void TypeIntoPath(benchmark::State& state, bool onDisk)
{
    ShippedDialog shipped(onDisk);
    auto* const path = shipped.Open(3).findChild<QLineEdit*>(QStringLiteral("TxtPath"));
    bool isOdd = false;
    for (auto _ : state) {
        QTest::keyClick(path, isOdd ? Qt::Key_Backspace : Qt::Key_A);
        isOdd = !isOdd;
    }
    if (shipped.Settings().contains("audioFile=\"a\"") != isOdd) {
        state.SkipWithError("The keystroke was not stored");
    }
}

// Without the disk.
void BM_Keystroke(benchmark::State& state)
{
    TypeIntoPath(state, false);
}
BENCHMARK(BM_Keystroke)->Unit(benchmark::kMillisecond)->UseRealTime();

// Including the time until file and folder are on the disk.
void BM_KeystrokeFlushedToDisk(benchmark::State& state)
{
    TypeIntoPath(state, true);
}
BENCHMARK(BM_KeystrokeFlushedToDisk)->Unit(benchmark::kMillisecond)->UseRealTime();

// One switch between the pages of two prayers.
void BM_SwitchOfPrayer(benchmark::State& state)
{
    ShippedDialog shipped(true);
    FrmAlerts& dialog = shipped.Open(3);
    std::int16_t tab = 3;
    for (auto _ : state) {
        tab = tab == 3 ? std::int16_t{4} : std::int16_t{3};
        dialog.SelectTab(tab);
    }
}
BENCHMARK(BM_SwitchOfPrayer)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    return LimitReporter({{"BM_KeystrokeFlushedToDisk", 5.0}}).RunAll();
}
