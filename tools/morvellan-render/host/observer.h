// What a host tells the program around it: misuse of the interface, messages, progress, parameter writes.
// And the traits of a host that a program may choose: its name, the suites and properties that it lacks.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/param_value.h"
#include "ofx/ofxCore.h"
#include "ofx/ofxNatron.h"

namespace morvellan::host
{

struct Message
{
  std::string type;  // kOfxMessageError and its siblings
  std::string id;
  std::string text;
};

// A plug-in's own write of a parameter's value.
struct ParameterWrite
{
  std::string parameter;
  ParamValue before;
  ParamValue after;
  std::optional<std::string> editBlock;  // the innermost open edit block's name, if one is open
  std::string action;
};

// A plug-in's own write of a property of a living parameter.
struct ParameterPropertyWrite
{
  std::string parameter;
  std::string property;
  std::string action;
};

// Calls may come from any thread. The defaults ignore everything.
class Observer
{
public:
  virtual ~Observer() = default;

  virtual void misuse(const std::string& /*what*/) {}
  // The answer is the status of the message call: yes or no for a question, kOfxStatOK otherwise.
  virtual OfxStatus message(const Message& /*message*/) { return kOfxStatOK; }
  virtual void persistentMessage(const Message& /*message*/) {}
  virtual void persistentMessageCleared() {}
  virtual void parameterWritten(const ParameterWrite& /*write*/) {}
  virtual void parameterPropertyWritten(const ParameterPropertyWrite& /*write*/) {}
  // The plug-in has given an image of this clip back.
  virtual void imageReleased(const std::string& /*clip*/) {}
  virtual void progressStarted(const std::string& /*label*/) {}
  // False asks the plug-in to stop.
  virtual bool progressed(double /*fraction*/) { return true; }
  virtual void progressEnded() {}
  virtual bool abortRequested() { return false; }
};

using SuiteKey = std::pair<std::string, int>;  // name and version

struct HostTraits
{
  std::string name = kNatronOfxHostName;
  std::string label = "Natron";
  std::vector<int> version{2, 5, 0};
  std::vector<int> apiVersion{1, 4};
  bool background = false;
  // Offers the properties of the host Natron's extension.
  bool natronExtensions = true;
  std::set<SuiteKey> withheldSuites;
  // Tables handed out in place of the host's own; each must outlive the plug-in.
  std::map<SuiteKey, const void*> replacedSuites;
  // Properties that the host says it does not know, wherever they are asked for.
  std::set<std::string> refusedProperties;
  // Parameters that a plug-in may set from a render. The standard allows none.
  std::set<std::string> writableInRender;
  // Images end at an unreadable page and have sentinels before them and in the padding of rows.
  bool guardedImages = false;
  // Answers a plug-in's parameter writes in a change action with change actions of the reason plug-in edited.
  bool echoPluginEdits = true;
  // Reports a plug-in's write of a value outside of a parameter's range as misuse.
  bool reportOutOfRange = true;
};

}  // namespace morvellan::host
