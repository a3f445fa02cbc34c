// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "app/ProgramWindowsFixture.h"

#include <QAccessible>
#include <QApplication>
#include <QFile>
#include <QMetaEnum>

namespace {

QString Quoted(QString text)
{
    text.replace(u'\n', u' ').remove(u'\r');
    return u'"' + text + u'"';
}

QString StatesOf(const QAccessibleInterface& element)
{
    const QAccessible::State state = element.state();
    const std::pair<bool, QString> states[] = {
        {state.disabled, QStringLiteral("disabled")}, {state.readOnly, QStringLiteral("read-only")},
        {state.checked, QStringLiteral("checked")},   {state.selected, QStringLiteral("selected")},
        {state.focused, QStringLiteral("focused")},
    };
    QString text;
    for (const auto& [isSet, name] : states) {
        text += isSet ? QStringLiteral(", ") + name : QString();
    }
    return text;
}

/// One line for each visible element: role, name, states, and the description if there is one.
void AddTree(const QAccessibleInterface& element, QStringList& lines, int depth = 0)
{
    if (element.state().invisible) {
        return;
    }
    const QString description = element.text(QAccessible::Description);
    lines << QString(2 * depth, u' ') +
                 QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(element.role())) +
                 u' ' + Quoted(element.text(QAccessible::Name)) + StatesOf(element) +
                 (description.isEmpty() ? QString() : QStringLiteral(" -- ") + Quoted(description));
    for (int i = 0; i < element.childCount(); ++i) {
        AddTree(*element.child(i), lines, depth + 1);
    }
}

/// The accessible tree of each window, as in the files of the folder accessible_trees.
class AccessibleTree : public ProgramWindowsFixture
{
protected:
    static void SetUpTestSuite() { SetUpApplication(*qApp); }

    static void ExpectTree(QWidget& window, const char* name)
    {
        QStringList lines;
        AddTree(*QAccessible::queryAccessibleInterface(&window), lines);
        QFile file(QStringLiteral(ACCESSIBLE_TREES "/%1.txt").arg(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(lines.join(u'\n').toStdString() + '\n', file.readAll().toStdString()) << name;
    }
};

TEST_F(AccessibleTree, mainWindow_isAsInItsFile)
{
    ExpectTree(OpenMain(), "FrmMain");
}

TEST_F(AccessibleTree, splash_isAsInItsFile)
{
    auto& splash = forms.Touch<DlgStart>();
    splash.Show();
    ExpectTree(splash, "DlgStart");
}

TEST_F(AccessibleTree, dialogPages_areAsInTheirFiles)
{
    Form& dialog = OpenAlerts();
    ExpectTree(dialog, "FrmAlerts_general");
    Click(dialog, "LblMobilAlert");
    ExpectTree(dialog, "FrmAlerts_mobile");
    Click(dialog, "LblFajr");
    ExpectTree(dialog, "FrmAlerts_fajr");
    Click(dialog, "LblShuruq");
    ExpectTree(dialog, "FrmAlerts_shuruq");
}

TEST_F(AccessibleTree, dialogPagesWithMoreLiveControls_areAsInTheirFiles)
{
    WriteSettings(SettingsWith({{"method", "User Defined"},
                                {"angle1", "-19.5"},
                                {"mobileEnabled", "true"},
                                {"mobileConfirm", "1"}}));
    Form& dialog = OpenAlerts();
    ExpectTree(dialog, "FrmAlerts_general_angles");
    Click(dialog, "LblFajr");
    ExpectTree(dialog, "FrmAlerts_fajr_mobile");
}

TEST_F(AccessibleTree, placeWindows_areAsInTheirFiles)
{
    ExpectTree(OpenSearch(), "FrmNewLoc");
    forms.Unload(FrmNewLoc::kName);
    ExpectTree(*forms.Loaded(FrmLocation::kName), "FrmLocation");
    auto& wait = forms.Touch(FrmWait::kName);
    wait.Show();
    ExpectTree(wait, "FrmWait");
}

TEST_F(AccessibleTree, popup_isAsInItsFile)
{
    ExpectTree(OpenPopup(), "FrmPopup");
}

} // namespace
