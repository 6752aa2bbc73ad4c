// The action that the calling thread is in. Suite calls ask it whether they are allowed now, and the time they mean.
#pragma once

#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace morvellan::host
{

class Effect;

class ActionScope
{
public:
  ActionScope(std::string action, Effect* effect, double time)
      : action_(std::move(action)), effect_(effect), time_(time), outer_(current_)
  {
    current_ = this;
  }
  ~ActionScope() { current_ = outer_; }
  ActionScope(const ActionScope&) = delete;
  ActionScope& operator=(const ActionScope&) = delete;

  // Null on a thread that is in no action.
  static ActionScope* current() { return current_; }

  const std::string& action() const { return action_; }
  Effect* effect() const { return effect_; }
  double time() const { return time_; }

  // Lends the scope to a thread that the host started for the plug-in.
  class Lend
  {
  public:
    explicit Lend(ActionScope* scope) : before_(current_) { current_ = scope; }
    ~Lend() { current_ = before_; }
    Lend(const Lend&) = delete;
    Lend& operator=(const Lend&) = delete;

  private:
    ActionScope* before_;
  };

private:
  static inline thread_local ActionScope* current_ = nullptr;

  const std::string action_;
  Effect* const effect_;
  const double time_;
  ActionScope* const outer_;
};

// Reports misuse unless the calling thread is in one of the actions; an empty list means any.
bool requireAction(std::string_view call, std::initializer_list<std::string_view> actions);

}  // namespace morvellan::host
