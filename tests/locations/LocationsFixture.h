// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/FakeMain.h"
#include "fakes/FakePlatform.h"
#include "fakes/LockableFiles.h"
#include "fakes/SettingsFile.h"
#include "forms/Boxes.h"
#include "forms/Forms.h"
#include "forms/LinkLabel.h"
#include "locations/FrmLocation.h"
#include "locations/FrmNewLoc.h"
#include "locations/FrmWait.h"
#include "store/SimpleXML.h"
#include "support/RuntimeError.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

/// A main window that reads settings.xml as the real one does and records its calls.
class ReadingMain final : public FakeMain
{
public:
    using FakeMain::FakeMain;

    int UpdateEverything() override
    {
        calls << QStringLiteral("UpdateEverything");
        if (!IsLoaded()) {
            return 0;
        }
        try {
            LoadConfiguration(Variables().Settings, GetPlatform());
            return 1;
        } catch (const RuntimeError&) {
            return 0;
        }
    }
    void PopLocation() override
    {
        calls << QStringLiteral("PopLocation");
        if (paintsFail > 0) {
            --paintsFail;
            throw RuntimeError(ErrorNumber::kLibraryNotFound, QStringLiteral("no library"));
        }
    }
    void PopPrayerFrame() override { calls << QStringLiteral("PopPrayerFrame"); }
    void Enable(bool enabled) override
    {
        calls << (enabled ? QStringLiteral("Enable") : QStringLiteral("Disable"));
        FakeMain::Enable(enabled);
    }
    void TakeFocus() override
    {
        calls << QStringLiteral("TakeFocus while ") + Variables().ActiveForm;
        if (IsLoaded() && isVisible() && isEnabled()) {
            SetFocus();
        }
    }

    QStringList calls;
    /// Number of the next PopLocation calls that throw.
    int paintsFail = 0;
};

/// The windows of the places over a fake main window, acted on as a user does.
class LocationsFixture : public testing::Test
{
protected:
    using Box = FakeMessageBoxes::Box;

    LocationsFixture()
    {
        WriteSettings();
        forms.Register(QStringLiteral("FrmMain"), [this] {
            auto form = std::make_unique<ReadingMain>(forms);
            main = form.get();
            return form;
        });
        forms.Register(FrmLocation::kName, [this] { return std::make_unique<FrmLocation>(forms); });
        forms.Register(FrmNewLoc::kName, [this] { return std::make_unique<FrmNewLoc>(forms); });
        forms.Register(FrmWait::kName, [this] { return std::make_unique<FrmWait>(forms); });
        forms.Touch(QStringLiteral("FrmMain")).Show();
        main->UpdateEverything();
        main->calls.clear();
        platform.http.reachable = true;
        Answer("getStates.pl",
               "<root><a state=\"Illinois\" state_id=\"17\"/><b state=\"Egypt\" state_id=\"EG\"/></root>");
    }

    void Answer(const char* script, const QByteArray& reply)
    {
        platform.http.replies[QLatin1String(script)] = reply;
    }
    void Refuse(const char* script) { platform.http.replies.erase(QLatin1String(script)); }

    /// As the main window's link does it.
    FrmLocation& OpenList()
    {
        main->Enable(false);
        auto& list = forms.Touch<FrmLocation>();
        list.Enable(true);
        list.Show();
        main->Variables().ActiveForm = list.Name();
        main->calls.clear();
        return list;
    }
    FrmNewLoc& OpenSearch()
    {
        ClickOn(OpenList(), "LblNewLocLink");
        if (Search() == nullptr) {
            throw std::runtime_error("the search window did not open");
        }
        platform.http.requests.clear();
        return static_cast<FrmNewLoc&>(*Search());
    }

    [[nodiscard]] Form* List() const { return forms.Loaded(FrmLocation::kName); }
    [[nodiscard]] Form* Search() const { return forms.Loaded(FrmNewLoc::kName); }
    [[nodiscard]] ListBox& Places() const { return Find<ListBox>(*List(), "LstLocations"); }
    static ListBox& Results(const Form& search) { return Find<ListBox>(search, "LstSearchResults"); }
    static void SearchZip(const Form& search)
    {
        Type(search, "TxtZipCode", QStringLiteral("60201"));
        ClickOn(search, "LblGetLink");
    }
    static void SearchCity(const Form& search, const QString& text = QStringLiteral("Ca"), int country = 1)
    {
        Find<QComboBox>(search, "CombState").setCurrentIndex(country);
        Type(search, "TxtCity", text);
        ClickOn(search, "LblGet2Link");
    }

    template <typename Control>
    static Control& Find(const Form& form, const char* name)
    {
        auto* const control = form.findChild<Control*>(QLatin1String(name));
        if (control == nullptr) {
            throw std::runtime_error(std::string("no control named ") + name);
        }
        return *control;
    }
    static void ClickOn(const Form& form, const char* name)
    {
        auto& control = Find<QWidget>(form, name);
        ASSERT_TRUE(control.isVisible() && control.isEnabled()) << name;
        QTest::mouseClick(&control, Qt::LeftButton);
    }
    static void Type(const Form& form, const char* name, const QString& text)
    {
        auto& field = Find<QLineEdit>(form, name);
        ASSERT_TRUE(field.isVisible() && field.isEnabled()) << name;
        field.clear();
        QTest::keyClicks(&field, text);
    }
    static void ClickRow(ListBox& list, int row)
    {
        list.scrollToItem(list.item(row));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(row)).center());
    }
    /// A whole double click, as the window system sends it.
    static void DoubleClick(ListBox& list, int row)
    {
        DoubleClick(list, list.visualItemRect(list.item(row)).center());
    }
    static void DoubleClick(ListBox& list, const QPoint& place)
    {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    }
    static void MoveOver(QWidget& widget, const QPoint& place)
    {
        QMouseEvent move(QEvent::MouseMove, place, widget.mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &move);
    }
    static QStringList Lines(const ListBox& list)
    {
        QStringList lines;
        for (int row = 0; row < list.count(); ++row) {
            lines << list.List(row);
        }
        return lines;
    }
    static QString Shown(const ListBox& list) { return Lines(list).join(u'|'); }
    /// Writes the usual settings.xml with another text in place of @p from.
    static void WriteChanged(const QString& from, const QString& to)
    {
        QString text = SettingsText();
        ASSERT_TRUE(text.contains(from));
        WriteSettings(text.replace(from, to));
    }
    static void WriteCurrent(QStringView key)
    {
        WriteChanged(QStringLiteral("Current=\"Chicago\""), QStringLiteral("Current=\"%1\"").arg(key));
    }
    QString Current() const
    {
        return Setting(QStringLiteral("Current"), QStringLiteral("//root//locations"));
    }
    QString Setting(const QString& name, const QString& path) const
    {
        SimpleXML settings(interfaces);
        EXPECT_TRUE(settings.Load(kSettingsFile));
        return settings.GetAttribute(name, path);
    }
    static Box Plain(const QString& text) { return FakeMessageBoxes::Message(text); }
    static Box Question(const QString& text) { return FakeMessageBoxes::Question(text); }
    void ExpectBoxes(const std::vector<Box>& expected)
    {
        EXPECT_EQ(platform.boxes.boxes, expected);
        platform.boxes.boxes.clear();
    }
    /// Only the main window is open, and it is the active form.
    void ExpectBackInMain()
    {
        EXPECT_EQ(List(), nullptr);
        EXPECT_EQ(Search(), nullptr);
        EXPECT_EQ(forms.Loaded(FrmWait::kName), nullptr);
        EXPECT_TRUE(main->isEnabled());
        EXPECT_EQ(main->Variables().ActiveForm, u"FrmMain");
    }
    /// The list of places is in front and usable.
    void ExpectBackInList()
    {
        ASSERT_NE(List(), nullptr);
        EXPECT_TRUE(List()->isEnabled() && List()->isVisible());
        EXPECT_TRUE(Find<QWidget>(*List(), "LblNewLocLink").isEnabled());
        EXPECT_EQ(Search(), nullptr);
        EXPECT_EQ(forms.Loaded(FrmWait::kName), nullptr);
        EXPECT_EQ(main->Variables().ActiveForm, u"FrmLocation");
    }

    FakePlatform platform;
    LockableFiles files;
    Platform interfaces = platform.With(files, platform.http);
    Forms forms{interfaces};
    ReadingMain* main = nullptr;
};
