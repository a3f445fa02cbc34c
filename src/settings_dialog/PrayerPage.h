// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class CheckBox;
class DialogContext;
class LinkLabel;
class QFrame;
class QGroupBox;
class QLabel;
class QRect;
class TextBox;

/// Whether a prayer is announced and how. One page serves the six prayers; which one it writes to is told by
/// the dialog's currentTab.
class PrayerPage final
{
public:
    PrayerPage(DialogContext& context, const QRect& place);

    QFrame* FrmPrayer;

    /// Shows the frame and fills the controls from the dialog's document as it stands: every way here goes
    /// through a handler that has just loaded or saved it. Writes nothing.
    void LoadPrayerPage();

private:
    void BuildBoxes();
    void BuildFileSelect();
    void BuildLines();
    void StoreOnClick(CheckBox* box, const QString& attribute);
    void Store(const QString& attribute, const QString& value);

    void OnAlertMainClick();
    void OnBrowseClick();
    [[nodiscard]] bool IsOnPrayer() const;
    /// The path of the prayer's element; empty on another page.
    [[nodiscard]] QString ElementPath() const;

    DialogContext& m_context;
    QLabel* LblPrayerName = nullptr;
    CheckBox* ChkAlertMain = nullptr;
    CheckBox* ChkSilAlert = nullptr;
    CheckBox* ChkAudioAlert = nullptr;
    QGroupBox* FrmFileSelect = nullptr;
    TextBox* TxtPath = nullptr;
    LinkLabel* LblBrowseLink = nullptr;
    CheckBox* ChkIndMobAlert = nullptr;
};
