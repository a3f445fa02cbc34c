// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "engine/CalculationLibrary.h"
#include "engine/PTimer.h"
#include "fakes/FakePlatform.h"
#include "fakes/StartWindows.h"
#include "forms/Forms.h"
#include "store/SimpleXML.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace {

// The shipped file as settings.xml in a folder of its own, with the real module.
struct ShippedProgram
{
    ShippedProgram()
    {
        if (!QFile::copy(QStringLiteral(DUSKBEACON_SHIPPED_SETTINGS), QStringLiteral("settings.xml"))) {
            qFatal("no settings");
        }
        QFile::setPermissions(QStringLiteral("settings.xml"),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        RegisterStartWindows(forms, calculation);
    }

    FakePlatform platform;
    CalculationLibrary calculation{QStringLiteral(DUSKBEACON_MODULE_FOLDER)};
    Forms forms{platform.interfaces};
};

void RecalculationOfTenSlots(benchmark::State& state)
{
    ShippedProgram shipped;
    PTimer timer(shipped.platform.interfaces, shipped.calculation);
    for (auto _ : state) {
        timer.SetupPTimer(4185, -8765, -6, 0, -1500, -1500, 0, 10, -1);
        benchmark::DoNotOptimize(timer.GetPrayerTime(10));
    }
}
BENCHMARK(RecalculationOfTenSlots)->Unit(benchmark::kMicrosecond);

void UpdateEverything(benchmark::State& state)
{
    ShippedProgram shipped;
    auto& window = shipped.forms.Touch<FrmMain>();
    for (auto _ : state) {
        if (window.UpdateEverything() != 1) {
            state.SkipWithError("the shipped file must do");
        }
    }
}
BENCHMARK(UpdateEverything)->Unit(benchmark::kMicrosecond);

void OneTick(benchmark::State& state)
{
    ShippedProgram shipped;
    shipped.forms.Touch<FrmMain>();
    shipped.platform.clock.SetTime(9, 30, 15);
    const FakeTimer* const ticker = shipped.platform.timers.Ticker();
    for (auto _ : state) {
        ticker->Fire();
    }
}
BENCHMARK(OneTick)->Unit(benchmark::kMicrosecond);

void LoadOfTheShippedFile(benchmark::State& state)
{
    ShippedProgram shipped;
    SimpleXML settings(shipped.platform.interfaces);
    for (auto _ : state) {
        if (!settings.Load(QStringLiteral("settings.xml"))) {
            state.SkipWithError("can't load");
        }
    }
}
BENCHMARK(LoadOfTheShippedFile)->Unit(benchmark::kMicrosecond);

void SaveOfTheShippedFile(benchmark::State& state)
{
    ShippedProgram shipped;
    SimpleXML settings(shipped.platform.interfaces);
    if (!settings.Load(QStringLiteral("settings.xml"))) {
        state.SkipWithError("can't load");
    }
    for (auto _ : state) {
        if (!settings.Save(QStringLiteral("settings.xml"))) {
            state.SkipWithError("can't save");
        }
    }
}
BENCHMARK(SaveOfTheShippedFile)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    SetUpApplication(application);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
