// File dialogs: the environment's answers, a scripted portal on a bus of the test's own, invented dialog programs, and
// a machine without any of them.
#include "files/dialog/file_dialog.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>

#include "tests/files/dialog/scripted_bus.h"

namespace morvellan::test
{
namespace
{

using files::DialogAnswer;
using files::DialogCode;
using files::DialogKind;
using files::DialogRequest;
using testing::HasSubstr;
namespace fs = std::filesystem;

const DialogRequest openRequest{DialogKind::open, "Morvellan Look file", "prm", "/tmp/looks", ""};
const DialogRequest saveRequest{DialogKind::save, "Morvellan Look file", "prm", "/tmp/looks", "Default.prm"};

TEST(EnvironmentDialog, AnswersForAPerson)
{
  EXPECT_EQ(static_cast<int>(DialogCode::accepted), 1);
  EXPECT_EQ(static_cast<int>(DialogCode::cancelled), 2);
  {
    const Environment environment("MORVELLAN_FILE_DIALOG", "accept:/a path/b:c.prm");
    const DialogAnswer answer = files::askForFile(openRequest);
    EXPECT_EQ(answer.code, DialogCode::accepted);
    EXPECT_EQ(answer.path, "/a path/b:c.prm");
  }
  {
    const Environment environment("MORVELLAN_FILE_DIALOG", "cancel");
    EXPECT_EQ(files::askForFile(saveRequest).code, DialogCode::cancelled);
  }
  for (const char* wrong : {"accept:", "Cancel", "/a/b.prm"})
  {
    const Environment environment("MORVELLAN_FILE_DIALOG", wrong);
    const DialogAnswer answer = files::askForFile(openRequest);
    EXPECT_EQ(answer.code, DialogCode::failed) << wrong;
    EXPECT_EQ(answer.reason, "MORVELLAN_FILE_DIALOG is neither accept:PATH nor cancel; correct it or unset it.");
  }
}

// Nothing but what a test provides: no variable, no bus, no program.
class Dialog : public testing::Test
{
protected:
  Dialog() : folder_(fs::temp_directory_path() / ("morvellan-dialog-" + std::to_string(::getpid())))
  {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    noAnswer_.emplace("MORVELLAN_FILE_DIALOG", std::nullopt);
    noBus_.emplace("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (folder_ / "no-bus").string());
  }
  ~Dialog() override { fs::remove_all(folder_); }

  // Asks with the folder of invented programs as the only one.
  DialogAnswer ask(const DialogRequest& request) const
  {
    const Environment programs("PATH", folder_.string());
    return files::askForFile(request);
  }
  void invent(const std::string& program, const std::string& body) const
  {
    std::ofstream(folder_ / program) << "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"" << folder_.string() << "/words\"\n"
                                     << body;
    fs::permissions(folder_ / program, fs::perms::owner_all);
  }
  std::string words() const
  {
    std::ostringstream all;
    all << std::ifstream(folder_ / "words").rdbuf();
    return all.str();
  }

  const fs::path folder_;
  std::optional<Environment> noAnswer_;
  std::optional<Environment> noBus_;
};

TEST_F(Dialog, WithoutAnySaysWhatToInstall)
{
  const DialogAnswer answer = ask(openRequest);
  EXPECT_EQ(answer.code, DialogCode::failed);
  EXPECT_THAT(answer.reason, HasSubstr("install xdg-desktop-portal"));
}

TEST_F(Dialog, ZenityIsAskedFirst)
{
  invent("zenity", "echo '/tmp/a b.prm'\n");
  invent("kdialog", "exit 3\n");
  const DialogAnswer answer = ask(saveRequest);
  EXPECT_EQ(answer.code, DialogCode::accepted);
  EXPECT_EQ(answer.path, "/tmp/a b.prm");
  EXPECT_EQ(words(), "--file-selection\n--filename=/tmp/looks/Default.prm\n--file-filter=Morvellan Look file | *.prm\n"
                     "--save\n--confirm-overwrite\n");
  ask(openRequest);
  EXPECT_EQ(words(), "--file-selection\n--filename=/tmp/looks/\n--file-filter=Morvellan Look file | *.prm\n");
}

TEST_F(Dialog, KdialogIsAskedWithoutIt)
{
  invent("kdialog", "echo /tmp/c.prm\n");
  EXPECT_EQ(ask(openRequest).path, "/tmp/c.prm");
  EXPECT_EQ(words(), "--getopenfilename\n/tmp/looks/\n*.prm|Morvellan Look file\n");
  ask(saveRequest);
  EXPECT_EQ(words(), "--getsavefilename\n/tmp/looks/Default.prm\n*.prm|Morvellan Look file\n");
}

TEST_F(Dialog, AProgramMayBeCancelledOrFail)
{
  invent("zenity", "exit 1\n");
  EXPECT_EQ(ask(openRequest).code, DialogCode::cancelled);
  for (const char* body : {"exit 5\n", "kill -9 $$\n", "exit 0\n", "echo relative.prm\n"})
  {
    invent("zenity", body);
    const DialogAnswer answer = ask(openRequest);
    EXPECT_EQ(answer.code, DialogCode::failed) << body;
    EXPECT_THAT(answer.reason, HasSubstr("zenity"));
  }
}

class Portal : public Dialog
{
protected:
  Portal()
  {
    if (!bus_.runs())
      throw std::runtime_error("dbus-daemon did not start; install the package dbus-daemon");
  }

  DialogAnswer askWith(const ScriptedPortal::Script& script, const DialogRequest& request = openRequest)
  {
    ScriptedPortal portal(script);
    const DialogAnswer answer = ask(request);
    calls_ = portal.calls();
    return answer;
  }

  PrivateBus bus_;
  std::vector<PortalCall> calls_;
};

TEST_F(Portal, AFileToOpen)
{
  const DialogAnswer answer = askWith(
      [](ScriptedPortal& portal, DBusMessage& call)
      {
        portal.returnRequest(call);
        portal.respond(call, 2, std::nullopt, "/org/freedesktop/portal/desktop/request/1_1/another");
        portal.respond(call, 0, "file:///tmp/my%20look.prm");
      });
  EXPECT_EQ(answer.code, DialogCode::accepted) << answer.reason;
  EXPECT_EQ(answer.path, "/tmp/my look.prm");
  ASSERT_EQ(calls_.size(), 1u);
  EXPECT_EQ(calls_[0].member, "OpenFile");
  EXPECT_EQ(calls_[0].title, "Open Morvellan Look file");
  EXPECT_EQ(calls_[0].filterName, "Morvellan Look file");
  EXPECT_EQ(calls_[0].pattern, "*.prm");
  EXPECT_EQ(calls_[0].folder, std::string("/tmp/looks") + '\0');
  EXPECT_EQ(calls_[0].name, "");
}

TEST_F(Portal, AFileToSave)
{
  const DialogAnswer answer = askWith(
      [](ScriptedPortal& portal, DBusMessage& call)
      {
        // The signal may be faster than the reply.
        portal.respond(call, 0, "file:///tmp/new.prm");
        portal.returnRequest(call);
      },
      saveRequest);
  EXPECT_EQ(answer.code, DialogCode::accepted) << answer.reason;
  EXPECT_EQ(answer.path, "/tmp/new.prm");
  ASSERT_EQ(calls_.size(), 1u);
  EXPECT_EQ(calls_[0].member, "SaveFile");
  EXPECT_EQ(calls_[0].name, "Default.prm");
}

TEST_F(Portal, ADialogMayBeCancelledOrEndInAnotherWay)
{
  const auto responding = [](dbus_uint32_t code, std::optional<std::string> uri)
  {
    return [=](ScriptedPortal& portal, DBusMessage& call)
    {
      portal.returnRequest(call);
      portal.respond(call, code, uri);
    };
  };
  EXPECT_EQ(askWith(responding(1, std::nullopt)).code, DialogCode::cancelled);
  EXPECT_EQ(askWith(responding(2, std::nullopt)).code, DialogCode::failed);
  EXPECT_EQ(askWith(responding(0, std::nullopt)).code, DialogCode::failed);
  EXPECT_EQ(askWith(responding(0, "https://example.org/a.prm")).code, DialogCode::failed);
}

TEST_F(Portal, ItsEndIsAnError)
{
  const DialogAnswer left = askWith(
      [](ScriptedPortal& portal, DBusMessage& call)
      {
        portal.returnRequest(call);
        portal.leave();
      });
  EXPECT_EQ(left.code, DialogCode::failed);
  EXPECT_EQ(left.reason, "The desktop portal ended while its file dialog was open.");
  const DialogAnswer ended = askWith(
      [this](ScriptedPortal& portal, DBusMessage& call)
      {
        portal.returnRequest(call);
        bus_.end();
      });
  EXPECT_EQ(ended.code, DialogCode::failed);
}

TEST_F(Portal, ARefusalIsAnErrorAndAPortalWithoutAChooserIsNone)
{
  const auto refusing = [](const char* error)
  { return [=](ScriptedPortal& portal, DBusMessage& call) { portal.refuse(call, error); }; };
  const DialogAnswer refused = askWith(refusing(DBUS_ERROR_ACCESS_DENIED));
  EXPECT_EQ(refused.code, DialogCode::failed);
  EXPECT_THAT(refused.reason, HasSubstr("as the script says"));
  EXPECT_THAT(askWith(refusing(DBUS_ERROR_UNKNOWN_METHOD)).reason, HasSubstr("install"));
  invent("zenity", "echo /tmp/z.prm\n");
  EXPECT_EQ(askWith(refusing(DBUS_ERROR_UNKNOWN_INTERFACE)).path, "/tmp/z.prm");
}

TEST_F(Portal, ABusWithoutAPortalLeavesThePrograms)
{
  invent("kdialog", "echo /tmp/k.prm\n");
  EXPECT_EQ(ask(openRequest).path, "/tmp/k.prm");
}

}  // namespace
}  // namespace morvellan::test
