// How the rules see the parameters: an interface that the plug-in implements over the host, and the tests over memory.
// Everything is by name; a name that the catalogue does not hold is a programming error and may throw.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace morvellan::params
{
using Rgb = std::array<double, 3>;

// The two ends that have a resolution: the clip "Source" and the clip "Output".
enum class Side
{
  Source,
  Target
};

struct Size
{
  int width = 0;
  int height = 0;

  bool operator==(const Size&) const = default;
};

// What a rule asks of the rest of the plug-in. None of them is a parameter write of the rules' own.
enum class Action
{
  SaveLook,
  LoadLook,
  CudaReport,
  ClipReport,
  AboutReport,
  GrainDepthChosen,  // rewrite the configuration file with GrainDepth and tell the user
  GpuChosen          // the same for NatronGPU, which is set back when its slot has no device
};

class ParamAccess
{
public:
  virtual ~ParamAccess() = default;

  // Values at the time of the change that is being handled. Booleans are 0 or 1, choices their index.
  virtual double number(std::string_view name) const = 0;
  virtual Rgb rgb(std::string_view name) const = 0;

  // Sets the value, without a time. The host holds a value outside the range at its end.
  virtual void setNumber(std::string_view name, double value) = 0;
  virtual void setRgb(std::string_view name, const Rgb& value) = 0;

  // Show or hide: the secret and enabled properties together.
  virtual void setVisible(std::string_view name, bool visible) = 0;
  // The secret property alone.
  virtual void setSecret(std::string_view name, bool secret) = 0;

  // An edit block of the host, named after the parameter; one undo step of the user.
  virtual void beginEdit(std::string_view name) = 0;
  virtual void endEdit(std::string_view name) = 0;

  // Right minus left and top minus bottom of the image that the side's clip gives at the time of the change;
  // nothing when it gives no image.
  virtual std::optional<Size> imageSize(Side side) = 0;

  // The resolution choice and size of a side, kept by the instance for its renders.
  virtual void rememberResolution(Side side, int choice, Size size) = 0;

  // Runs an action. Look files, reports and device choices live above this folder.
  virtual void perform(Action action) = 0;
};
}  // namespace morvellan::params
