// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/Bars.h"
#include "forms/Boxes.h"
#include "forms/LinkLabel.h"
#include "fuzz/FuzzWorld.h"
#include "fuzz/InputParts.h"
#include "service/ServiceAddresses.h"
#include "settings_dialog/FrmAlerts.h"
#include "settings_dialog/MobileSignup.h"

#include <QAbstractButton>
#include <QUrl>

#include <pugixml.hpp>

#include <cmath>
#include <sstream>

namespace {

// The document as XML, without the attributes that the dialog changes.
std::string WithoutOptions(const SimpleXML& settings)
{
    pugi::xml_document document;
    constexpr unsigned int kAll = pugi::parse_full | pugi::parse_ws_pcdata;
    document.load_string(settings.xmldoc->DocumentElement().Xml().toUtf8().constData(), kAll);
    for (const char* path :
         {"//root//alerts", "//root//alerts//fajr", "//root//alerts//shuruq", "//root//alerts//duhr",
          "//root//alerts//asr", "//root//alerts//maghrib", "//root//alerts//isha"}) {
        document.select_node(path).node().remove_attributes();
    }
    std::ostringstream stream;
    document.save(stream, "", pugi::format_raw);
    return stream.str();
}

// A loaded document can be saved, and loads again unchanged. False if the text does not load.
bool CheckStore(FuzzWorld& world)
{
    SimpleXML settings(world.platform.interfaces);
    if (!settings.Load(kSettingsFile)) {
        Demand(settings.GetRootName().isEmpty(), "a document that does not load is empty");
        return false;
    }
    const QString name = QStringLiteral("copy.xml");
    Demand(settings.Save(name), "what is loaded can be saved");
    SimpleXML copy(world.platform.interfaces);
    Demand(copy.Load(name), "what is saved can be loaded");
    Demand(copy.XML() == settings.XML(), "nothing changes on the way through the file");
    return true;
}

void CheckConfiguration(FuzzWorld& world)
{
    Configuration held;
    if (!LoadSettings(held, world.platform.interfaces)) {
        return;
    }
    Demand(std::isfinite(held.LatitudeFinal) && std::isfinite(held.LongitudeFinal), "a place has numbers");
    Demand(std::abs(held.MinutesBeyondZone.value_or(0)) < 60, "an offset lies within an hour of its zone");
    Demand(held.PID == held.ProdID && held.Dstr == held.DistText, "the public copies are copies");
    for (const QString& text : {ServiceAddresses::Base(held), ServiceAddresses::Probe(held)}) {
        const QUrl address(text);
        Demand(!address.host().isEmpty() && address.scheme().startsWith(u"http"), "the web alone is asked");
    }
    SimpleXML settings(world.platform.interfaces);
    Demand(settings.Load(kSettingsFile) && settings.Save(kSettingsFile), "a configuration can be saved");
    Configuration again;
    Demand(LoadSettings(again, world.platform.interfaces) && again == held,
           "a saved configuration is the same one");
}

// An action of the user on an enabled control.
void Act(const FrmAlerts& dialog, Choices& choices, const QByteArray& typed)
{
    QList<QWidget*> controls;
    for (QWidget* const control : dialog.findChildren<QWidget*>()) {
        const bool isLive = control->isVisible() && control->isEnabled();
        if (isLive &&
            (qobject_cast<QAbstractButton*>(control) != nullptr ||
             qobject_cast<SpinBar*>(control) != nullptr || qobject_cast<TextBox*>(control) != nullptr ||
             qobject_cast<LinkLabel*>(control) != nullptr)) {
            controls << control;
        }
    }
    QWidget* const control = controls.at(choices.Among(controls.size()));
    if (auto* const button = qobject_cast<QAbstractButton*>(control); button != nullptr) {
        button->click();
    } else if (auto* const bar = qobject_cast<SpinBar*>(control); bar != nullptr) {
        bar->triggerAction(choices.Next() % 2 == 0 ? SpinBar::SliderSingleStepAdd
                                                   : SpinBar::SliderSingleStepSub);
    } else if (auto* const link = qobject_cast<LinkLabel*>(control); link != nullptr) {
        link->Click();
    } else {
        auto& box = static_cast<TextBox&>(*control);
        if (!box.isReadOnly()) {
            box.selectAll();
            box.insert(QString::fromUtf8(typed));
        }
    }
}

void CheckDialog(FuzzWorld& world, Choices& choices, const QByteArray& typed)
{
    SimpleXML before(world.platform.interfaces);
    const bool wasWhole = before.Load(kSettingsFile);
    const QByteArray bytes = world.Settings();
    world.files.saves = 0;
    auto& dialog = world.forms.Touch<FrmAlerts>();
    dialog.Show();
    for (std::int16_t tab = 0; tab <= 9 && dialog.IsLoaded(); ++tab) {
        dialog.SelectTab(tab);
    }
    Demand(world.files.saves == 0, "looking at the pages writes nothing");
    constexpr int kMostActions = 12;
    for (int i = 0; i < kMostActions && choices.AreLeft() && dialog.IsLoaded(); ++i) {
        Act(dialog, choices, typed);
    }
    world.forms.Unload(FrmAlerts::kName);
    Demand(world.main->Variables().ActiveForm == world.main->Name(),
           "the main window has the attention again");
    if (!wasWhole) {
        Demand(world.Settings() == bytes, "a file that does not load is left alone");
        return;
    }
    SimpleXML after(world.platform.interfaces);
    Demand(after.Load(kSettingsFile), "the dialog leaves a whole file");
    Demand(WithoutOptions(after) == WithoutOptions(before), "the dialog changes nothing but its options");
}

} // namespace

// The file; then the locale and the actions of the user in the dialog; then the typed texts.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    InputParts parts(data, size);
    FuzzWorld world;
    MobileSignup signup(world.forms);
    world.forms.Register(FrmAlerts::kName,
                         [&world, &signup] { return std::make_unique<FrmAlerts>(world.forms, signup); });
    world.files.Write(kSettingsFile, QByteArray::fromStdString(parts.Next()));
    Choices choices(parts.Next());
    const QLocale locales[] = {world.platform.region.locale, QLocale(QLocale::German, QLocale::Germany),
                               QLocale(QLocale::Arabic, QLocale::Egypt)};
    world.platform.region.locale = locales[choices.Among(std::size(locales))];
    const bool isWhole = CheckStore(world);
    // A window costs a hundred times as much as refusing a file that is not XML.
    if (isWhole || choices.AreLeft()) {
        CheckDialog(world, choices, QByteArray::fromStdString(parts.Next()));
    }
    CheckConfiguration(world);
    world.DemandAlive();
    return 0;
}
