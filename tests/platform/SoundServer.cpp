// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundServer.h"

#include <QTest>

#include <gtest/gtest.h>
#include <signal.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr int kWait = 20'000;
constexpr qsizetype kWindow = SoundServer::kRate / 4;

std::vector<double> Newest(const QByteArray& bytes)
{
    const auto count = static_cast<qsizetype>(bytes.size() / 2);
    if (count < kWindow) {
        return {};
    }
    const auto* const samples = reinterpret_cast<const std::int16_t*>(bytes.constData());
    std::vector<double> window;
    window.reserve(static_cast<std::size_t>(kWindow));
    for (qsizetype i = count - kWindow; i < count; ++i) {
        window.push_back(samples[i] / 32768.0);
    }
    return window;
}

// One term of the Fourier transform.
double Amplitude(const std::vector<double>& window, double hertz)
{
    double sine = 0.0;
    double cosine = 0.0;
    for (std::size_t i = 0; i < window.size(); ++i) {
        const double angle = 2.0 * std::numbers::pi * hertz * static_cast<double>(i) / SoundServer::kRate;
        sine += window[i] * std::sin(angle);
        cosine += window[i] * std::cos(angle);
    }
    return window.empty() ? 0.0 : 2.0 * std::hypot(sine, cosine) / static_cast<double>(window.size());
}

double Power(const std::vector<double>& window)
{
    double sum = 0.0;
    for (const double sample : window) {
        sum += sample * sample;
    }
    return window.empty() ? 0.0 : sum / static_cast<double>(window.size());
}

} // namespace

SoundServer::SoundServer()
{
    qputenv("XDG_RUNTIME_DIR", m_folder.path().toUtf8());
    // libpulse must not find or start another server.
    qputenv("PULSE_SERVER", "unix:" + m_folder.path().toUtf8() + "/pulse/native");
}

SoundServer::~SoundServer()
{
    Kill();
}

bool SoundServer::Start()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), m_folder.path());
    environment.remove(QStringLiteral("PULSE_SERVER"));
    m_server = std::make_unique<QProcess>();
    m_server->setProcessEnvironment(environment);
    m_server->setStandardErrorFile(QProcess::nullDevice());
    m_server->start(QStringLiteral("pulseaudio"),
                    QStringLiteral("-n --daemonize=no --use-pid-file=no --exit-idle-time=-1").split(u' ') +
                        QStringList{QStringLiteral("-L"),
                                    QStringLiteral("module-native-protocol-unix auth-anonymous=1"),
                                    QStringLiteral("-L"), QStringLiteral("module-null-sink sink_name=nul")});
    // Retry: the recorder fails until the server listens.
    return QTest::qWaitFor(
        [this] {
            if (m_recorder && m_recorder->state() != QProcess::NotRunning) {
                Collect();
                return !m_samples.isEmpty();
            }
            m_recorder = std::make_unique<QProcess>();
            m_recorder->setStandardErrorFile(QProcess::nullDevice());
            m_recorder->start(QStringLiteral("parec"),
                              QStringLiteral("--device=nul.monitor --format=s16le --rate=%1 --channels=1 "
                                             "--latency-msec=20 --raw")
                                  .arg(kRate)
                                  .split(u' '));
            return false;
        },
        kWait);
}

void SoundServer::Kill()
{
    for (auto* process : {&m_recorder, &m_server}) {
        if (*process) {
            (*process)->kill();
            (*process)->waitForFinished();
            process->reset();
        }
    }
    m_samples.clear();
}

// A server that has ended has process id 0, for which kill() would signal this process group.
void SoundServer::Hang()
{
    ASSERT_GT(m_server->processId(), 0);
    ::kill(static_cast<pid_t>(m_server->processId()), SIGSTOP);
}

void SoundServer::GoOn()
{
    ASSERT_GT(m_server->processId(), 0);
    ::kill(static_cast<pid_t>(m_server->processId()), SIGCONT);
}

void SoundServer::Collect()
{
    if (m_recorder) {
        m_samples += m_recorder->readAllStandardOutput();
    }
}

bool SoundServer::WaitForTone(double hertz)
{
    return QTest::qWaitFor(
        [this, hertz] {
            Collect();
            const std::vector<double> window = Newest(m_samples);
            const double amplitude = Amplitude(window, hertz);
            return amplitude > 0.01 && amplitude * amplitude / 2.0 > 0.9 * Power(window);
        },
        kWait);
}

bool SoundServer::WaitForSilence()
{
    return QTest::qWaitFor(
        [this] {
            Collect();
            const std::vector<double> window = Newest(m_samples);
            return !window.empty() && Power(window) < 1e-9;
        },
        kWait);
}

double SoundServer::LatestAmplitude(double hertz)
{
    Collect();
    return Amplitude(Newest(m_samples), hertz);
}
