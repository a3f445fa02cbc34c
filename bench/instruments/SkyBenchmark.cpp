// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "LimitReporter.h"
#include "fakes/FakePlatform.h"
#include "instruments/VBSunAndMoon.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace {

// One update of the sky, which the window makes every 300 seconds. It decodes seven pictures.
void UpdateSky(benchmark::State& state)
{
    FakePlatform platform;
    VBSunAndMoon sky(platform.files, QStringLiteral(":/pictures"), nullptr);
    sky.Setup(390, 1122);
    std::int16_t minute = 0;
    while (state.KeepRunning()) {
        sky.Update(450, 300, minute);
        minute = static_cast<std::int16_t>((minute + 5) % 1440);
    }
}
BENCHMARK(UpdateSky)->Unit(benchmark::kMicrosecond);

// A repaint of the window between two updates.
void RepaintSky(benchmark::State& state)
{
    FakePlatform platform;
    VBSunAndMoon sky(platform.files, QStringLiteral(":/pictures"), nullptr);
    QImage window(sky.size(), QImage::Format_RGB32);
    while (state.KeepRunning()) {
        sky.render(&window, QPoint(), QRegion(), QWidget::RenderFlags());
    }
}
BENCHMARK(RepaintSky)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    return LimitReporter({{"UpdateSky", 3.0}}).RunAll();
}
