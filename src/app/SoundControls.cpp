// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SoundControls.h"

#include "app/MainControls.h"
#include "forms/Form.h"
#include "platform/MediaPlayer.h"
#include "platform/Platform.h"

SoundControls::SoundControls(Form& form, MainControls& controls)
    : m_player(form.Outside().player)
    , m_controls(controls)
{
    m_controls.LblStopLink->OnClick([this, &form] {
        form.Handle([this] {
            // Disabled at once: the player may report the stop later or never.
            m_controls.LblStopLink->setEnabled(false);
            m_player.Stop();
        });
    });
    m_controls.VolControl->OnChange(
        [this, &form] { form.Handle([this] { m_player.SetVolume(m_controls.VolControl->Value()); }); });
    m_player.SetPlayStateHandler(
        [this, &form](int newState) { form.Handle([this, newState] { OnPlayStateChange(newState); }); });
}

SoundControls::~SoundControls()
{
    m_player.SetPlayStateHandler(nullptr);
}

void SoundControls::ShowVolume()
{
    m_controls.VolControl->SetValue(m_player.Volume());
}

void SoundControls::OnPlayStateChange(int newState)
{
    if (newState == MediaPlayer::kStopped) {
        m_player.ClearPlaylist();
        m_controls.LblStopLink->setEnabled(false);
    }
}
