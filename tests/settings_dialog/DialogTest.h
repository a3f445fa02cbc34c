// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/FakeMain.h"
#include "fakes/FakePlatform.h"
#include "fakes/SettingsFile.h"
#include "forms/Bars.h"
#include "forms/Boxes.h"
#include "forms/Forms.h"
#include "forms/LinkLabel.h"
#include "settings_dialog/FrmAlerts.h"
#include "settings_dialog/MobileSignup.h"
#include "support/RuntimeError.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <stdexcept>

/// The files of a test, with every load and save counted and every saved text kept.
class CountingFiles final : public FileStore
{
public:
    explicit CountingFiles(FileStore& files)
        : m_files(files)
    {
    }
    [[nodiscard]] std::optional<QByteArray> Read(const QString& path, qint64 limit) const override
    {
        ++loads;
        return m_files.Read(path, limit);
    }
    bool Replace(const QString& path, const QByteArray& content) override
    {
        if (refuses) {
            return false;
        }
        if (throws) {
            throw std::runtime_error("no file");
        }
        saved.push_back(content);
        savedNames << path;
        return m_files.Replace(path, content);
    }
    bool Write(const QString& path, const QByteArray& content) override
    {
        return m_files.Write(path, content);
    }

    mutable int loads = 0;
    std::vector<QByteArray> saved;
    QStringList savedNames;
    /// Saves fail, as with a file that can't be written.
    bool refuses = false;
    /// Saves throw, as after an error of the program.
    bool throws = false;

private:
    FileStore& m_files;
};

/// A main window that records the calls of the dialog.
class RecordingMain final : public SilentMain
{
public:
    explicit RecordingMain(Forms& windows)
        : forms(windows)
    {
        forms.SetMain(*this);
    }
    int UpdateEverything() override
    {
        calls << QStringLiteral("UpdateEverything");
        activeFormAtUpdate = forms.Variables().ActiveForm;
        if (updateFails) {
            throw RuntimeError(ErrorNumber::kOverflow, QStringLiteral("Overflow"));
        }
        return 0;
    }
    void PopLocation() override { calls << QStringLiteral("PopLocation"); }
    void PopPrayerFrame() override { calls << QStringLiteral("PopPrayerFrame"); }
    void Enable(bool enabled) override
    {
        calls << (enabled ? QStringLiteral("Enable") : QStringLiteral("Disable"));
    }
    void TakeFocus() override
    {
        calls << QStringLiteral("TakeFocus");
        if (focusFails) {
            throw RuntimeError(ErrorNumber::kObjectNotSet, QStringLiteral("no window"));
        }
    }

    QStringList calls;
    Forms& forms;
    QString activeFormAtUpdate;
    bool updateFails = false;
    bool focusFails = false;
};

/// The settings dialog over a real settings.xml in a temporary folder.
class DialogTest : public testing::Test
{
protected:
    DialogTest()
    {
        forms.Register(FrmAlerts::kName, [this] { return std::make_unique<FrmAlerts>(forms, signup); });
        forms.Variables().ActiveForm = QStringLiteral("FrmMain");
        forms.Variables().Settings.PID = QStringLiteral("P-77");
        forms.Variables().Settings.Dstr = QStringLiteral("dbeacon");
        WriteSettings();
    }

    /// settings.xml with one text put in place of another that must be there.
    static void WriteChanged(QAnyStringView before, QAnyStringView after)
    {
        WriteChanged({{before.toString(), after.toString()}});
    }
    static void WriteChanged(const std::vector<std::pair<QString, QString>>& changes)
    {
        QString text = SettingsText();
        for (const auto& [before, after] : changes) {
            ASSERT_TRUE(text.contains(before)) << before.toStdString();
            text.replace(before, after);
        }
        WriteSettings(text);
    }
    /// As another program does while the dialog is open.
    static void ChangePlaceInTheFile()
    {
        WriteSettings(
            QString::fromUtf8(ReadSettings())
                .replace(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"Makkah\"")));
    }
    /// That change has outlived the saves of the dialog.
    static void ExpectChangedPlace() { EXPECT_TRUE(ReadSettings().contains("Current=\"Makkah\"")); }
    /// Two angles of the user, as the file has them.
    static void WriteUserDefined(const char* angle1, const char* angle2)
    {
        WriteSettings(SettingsWith({{"method", "User Defined"}, {"angle1", angle1}, {"angle2", angle2}}));
    }

    /// As the links of the main window do: through the first page.
    void Open(std::int16_t tab = 1)
    {
        dialog = &forms.Touch<FrmAlerts>();
        dialog->Show();
        dialog->SelectTab(1);
        forms.Variables().ActiveForm = QStringLiteral("FrmAlerts");
        if (tab != 1) {
            dialog->SelectTab(tab);
        }
        Forget();
    }
    /// Counts loads and saves from here on.
    void Forget()
    {
        files.loads = 0;
        files.saved.clear();
        files.savedNames.clear();
    }
    [[nodiscard]] bool IsOpen() const { return forms.Loaded(FrmAlerts::kName) != nullptr; }

    template <typename Control>
    [[nodiscard]] Control& Find(const char* name) const
    {
        auto* const control = dialog->findChild<Control*>(QLatin1String(name));
        if (control == nullptr) {
            qFatal("There is no control %s", name);
        }
        return *control;
    }
    [[nodiscard]] QWidget& Widget(const char* name) const { return Find<QWidget>(name); }
    [[nodiscard]] TextBox& Box(const char* name) const { return Find<TextBox>(name); }
    [[nodiscard]] SpinBar& Bar(const char* name) const { return Find<SpinBar>(name); }
    [[nodiscard]] QString TextOf(const char* name) const { return Box(name).Text(); }
    [[nodiscard]] bool IsTicked(const char* name) const { return Find<QAbstractButton>(name).isChecked(); }
    [[nodiscard]] bool IsLive(const char* name) const { return Widget(name).isEnabled(); }

    /// The texts of labels, buttons and boxes, and the titles of frames.
    void ExpectCaptions(std::initializer_list<std::pair<const char*, const char16_t*>> captions) const
    {
        for (const auto& [name, caption] : captions) {
            const QWidget& control = Widget(name);
            const char* const property = control.inherits("QGroupBox") ? "title" : "text";
            EXPECT_EQ(control.property(property).toString(), caption) << name;
        }
    }

    /// A click of the mouse on a control that the user can reach.
    void Click(const char* name) const
    {
        QWidget& control = Widget(name);
        ASSERT_TRUE(control.isVisible()) << name;
        ASSERT_TRUE(control.isEnabled()) << name;
        QTest::mouseClick(&control, Qt::LeftButton, {}, QPoint(8, control.height() / 2));
    }
    void ClickArrow(const char* name, bool up) const
    {
        QWidget& bar = Widget(name);
        ASSERT_TRUE(bar.isVisible() && bar.isEnabled()) << name;
        QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 2, up ? 3 : bar.height() - 3));
    }
    /// A key: a character, or its name as "Ctrl+A" or "Backspace".
    void Press(const char* name, const QString& key) const
    {
        QWidget& box = Widget(name);
        ASSERT_TRUE(box.isVisible() && box.isEnabled()) << name;
        if (key.size() == 1) {
            QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, key, Qt::NoModifier);
        } else {
            QTest::keySequence(&box, QKeySequence(key));
        }
    }
    /// Puts @p text in place of all that is in the box, in one stroke: pasted over the selection.
    void Paste(const char* name, const QString& text) const
    {
        QWidget& box = Widget(name);
        ASSERT_TRUE(box.isVisible() && box.isEnabled()) << name;
        QGuiApplication::clipboard()->setText(text);
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    }

    /// An attribute in the file, "(absent)" if it is missing.
    [[nodiscard]] static QString Stored(QAnyStringView attribute, const char* element = "")
    {
        return AttributeIn(ReadSettings(), attribute.toString(), element);
    }
    /// The attribute in each of the texts that have been saved, in order, with "|" between them.
    [[nodiscard]] QString SavedValues(QAnyStringView attribute, const char* element = "") const
    {
        QStringList values;
        for (const QByteArray& text : files.saved) {
            values << AttributeIn(text, attribute.toString(), element);
        }
        return values.join(u'|');
    }
    [[nodiscard]] std::size_t Saves() const { return files.saved.size(); }

    /// Opens the dialog on a file that closes it again; the file is unchanged.
    void ExpectClosedOnOpening()
    {
        const QByteArray before = ReadSettings();
        main.calls.clear();
        dialog = &forms.Touch<FrmAlerts>();
        dialog->Show();
        dialog->SelectTab(1);
        ExpectHandedOver();
        EXPECT_EQ(ReadSettings(), before);
    }
    void ExpectOnlyFrame(const char* shown) const
    {
        for (const char* const frame : {"FrmGeneral", "FrmMobilAlert", "FrmPrayer"}) {
            EXPECT_EQ(Widget(frame).isVisible(), qstrcmp(frame, shown) == 0) << frame;
        }
    }
    void ExpectHandedOver()
    {
        EXPECT_FALSE(IsOpen());
        EXPECT_EQ(main.calls.join(u'|'), kHandOver);
        EXPECT_EQ(forms.Variables().ActiveForm, u"FrmMain");
        EXPECT_TRUE(platform.boxes.boxes.empty());
    }

    /// The calls of the main window when the dialog closes.
    static constexpr const char16_t* kHandOver = u"Enable|UpdateEverything|TakeFocus";
    FakePlatform platform;
    CountingFiles files{platform.files};
    Platform interfaces = platform.With(files, platform.http);
    Forms forms{interfaces};
    MobileSignup signup{forms};
    RecordingMain main{forms};
    FrmAlerts* dialog = nullptr;

private:
    [[nodiscard]] static QString AttributeIn(const QByteArray& text, const QString& attribute,
                                             const char* element)
    {
        pugi::xml_document document;
        document.load_buffer(text.constData(), static_cast<std::size_t>(text.size()));
        pugi::xml_node node = document.child("root").child("alerts");
        if (*element != '\0') {
            node = node.child(element);
        }
        const pugi::xml_attribute found = node.attribute(attribute.toUtf8().constData());
        return found ? QString::fromUtf8(found.value()) : QStringLiteral("(absent)");
    }
};

inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}
