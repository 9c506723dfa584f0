#include "platform/session/address_opener.h"

#include <gtest/gtest.h>

namespace kivra {
namespace {

using Command = std::vector<std::string>;

constexpr auto accessibility = "settings:Privacy_Accessibility";

/// On a desktop of this name, on which all programs of settings but `missing` are installed.
AddressOpener openerOn(const std::string& desktop, const std::string& missing = "") {
  return AddressOpener({.currentDesktop = desktop,
                        .helpPage = "/opt/my apps/permissions.html",
                        .isInstalled = [missing](const auto& name) { return name != missing; }});
}

TEST(AddressOpener, ShowsThePageOfTheDesktop) {
  EXPECT_EQ(openerOn("GNOME").command(accessibility),
            (Command{"gnome-control-center", "universal-access"}));
  EXPECT_EQ(openerOn("ubuntu:GNOME").command(accessibility).front(), "gnome-control-center");
  EXPECT_EQ(openerOn("KDE").command(accessibility), (Command{"systemsettings", "kcm_access"}));
  EXPECT_EQ(openerOn("XFCE").command(accessibility), (Command{"xfce4-accessibility-settings"}));
}

TEST(AddressOpener, ShowsTheHelpWhereThereIsNoPage) {
  const Command help = {"xdg-open", "file:///opt/my%20apps/permissions.html#Privacy_Accessibility"};
  EXPECT_EQ(openerOn("").command(accessibility), help);
  EXPECT_EQ(openerOn("i3").command(accessibility), help);
  EXPECT_EQ(openerOn("XFCE", "xfce4-accessibility-settings").command(accessibility), help);
  EXPECT_EQ(openerOn("GNOME").command("settings:Privacy_ListenEvent"),
            (Command{"xdg-open", "file:///opt/my%20apps/permissions.html#Privacy_ListenEvent"}));
}

TEST(AddressOpener, OpensNothingWithoutTheHelp) {
  const AddressOpener opener({.currentDesktop = "", .helpPage = {}, .isInstalled = {}});
  EXPECT_EQ(opener.command(accessibility), Command());
}

TEST(AddressOpener, OpensAddressesAndNothingElse) {
  const auto opener = openerOn("GNOME");
  for (const auto* address : {"https://example.org/a?b=c", "http://localhost:5000", "file:///a"}) {
    EXPECT_EQ(opener.command(address), (Command{"xdg-open", address}));
  }
  for (const auto* address : {"", "--help", "/bin/sh", "javascript:1", "file:a"}) {
    EXPECT_EQ(opener.command(address), Command()) << address;
  }
}

}  // namespace
}  // namespace kivra
