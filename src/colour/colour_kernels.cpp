// From a row of names to a program of numbers.
#include "colour/colour_kernels.h"

#include <limits>
#include <optional>
#include <stdexcept>
#include <string>

#include "colour/curves.h"
#include "colour/gamuts.h"
#include "colour/log_c4.h"
#include "colour/program.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr float infinity = std::numeric_limits<float>::infinity();

bool between(int x, int low, int high)
{
  return x >= low && x <= high;
}

// Inputs that carry no range to compress of their own: linear, display and video.
bool isCompressed(int colourspace)
{
  const bool plain = colourspace == 0 || colourspace == 1 || isAcesLinear(colourspace) || colourspace == 27;
  return !plain && !between(colourspace, 29, 34) && colourspace < 46;
}

bool isExpanded(int colourspace)
{
  return isCompressed(colourspace) && !between(colourspace, 42, 44);
}

struct Bounds
{
  float low, high;
};

// The hard clip of code values, or of light, by index; none from 33 to 41 and above 43.
std::optional<Bounds> hardClipBounds(int colourspace)
{
  if (colourspace == 0)
    return Bounds{-0.125f, 4.875f};
  if (colourspace == 1 || between(colourspace, 8, 10) || isPq(colourspace))
    return Bounds{0.0f, 1.0f};
  if (isAcesLinear(colourspace))
    return Bounds{-8.0f, 5.0f};
  if (colourspace == 6)
    return Bounds{-0.358286828f, 1.46799636f};
  if (colourspace == 7)
    return Bounds{-0.249136001f, 1.46799636f};
  if (between(colourspace, 2, 3) || between(colourspace, 11, 32))
    return Bounds{-0.125f, 1.125f};
  return std::nullopt;
}

// Puts the steps of a row together; an operation without numbers at an index leaves no step.
class Resolver
{
public:
  Resolver(Program& program, LinearGamut gamut, const ColourArguments& arguments)
      : program(program), gamut(gamut), arguments(arguments), index(arguments.colourspace)
  {
  }

  void run(const Composition& composition)
  {
    for (const Op op : composition.ops)
    {
      if (op == Op::End)
        return;
      if ((op == Op::WhereExpanded && !isExpanded(index)) || (op == Op::WhereCompressed && !isCompressed(index)))
        return;
      if (op == Op::WhereLinear && !isLinear(index))
      {
        program.writesNothing = true;
        return;
      }
      if (!addValueStep(op) && !addCurveStep(op) && !addGamutStep(op))
        addRangeStep(op);
    }
  }

private:
  bool addValueStep(Op op)
  {
    switch (op)
    {
    case Op::ExposureAdd:
      program.add({.kind = StepKind::Add, .low = arguments.value});
      program.add({.kind = StepKind::Clamp, .low = 0.0f, .high = 1.0f});
      return true;
    case Op::ExposureMultiply:
      program.add({.kind = StepKind::Multiply, .low = arguments.value});
      program.add({.kind = StepKind::Clamp, .low = 0.0f, .high = logC4Largest});
      return true;
    case Op::Gain:
      program.add({.kind = StepKind::Multiply, .low = arguments.gain});
      return true;
    case Op::SoftClip:
      program.add({.kind = StepKind::SoftClip, .softClip = arguments.softClip});
      return true;
    case Op::HardClip:
      if (const std::optional<Bounds> bounds = hardClipBounds(index))
        program.add({.kind = StepKind::Clamp, .low = bounds->low, .high = bounds->high});
      return true;
    case Op::RgbToLuma:
      program.add({.kind = StepKind::RgbToLuma});
      return true;
    case Op::LumaToRgb:
      program.add({.kind = StepKind::LumaToRgb});
      return true;
    default:
      return false;
    }
  }

  void decode(Decoding decoding, bool saturate = false)
  {
    decoding.saturate = saturate;
    if (decoding.curve != Curve::Identity)
      program.add({.kind = StepKind::Decode, .decoding = decoding});
  }

  void encode(const Encoding& encoding)
  {
    if (encoding.curve != Curve::Identity)
      program.add({.kind = StepKind::Encode, .encoding = encoding});
  }

  // The index whose curve carries this one through the native-gamut stages.
  int carried() const { return isAcesLinear(index) ? 3 : index; }

  // The index whose log linear data of this one is turned to.
  int native() const { return index == 0 ? 2 : isAcesLinear(index) ? 7 : index == 30 ? 31 : index; }

  bool addCurveStep(Op op)
  {
    constexpr CurveTable shortTable = CurveTable::Short;
    switch (op)
    {
    case Op::DecodeShort:
      decode(decodingOf(shortTable, index));
      return true;
    case Op::DecodeShortSaturated:
      decode(decodingOf(shortTable, index), isPq(index));
      return true;
    case Op::DecodeCarried:
      decode(decodingOf(shortTable, carried()), isPq(index));
      return true;
    case Op::DecodeFull:
      decode(decodingOf(CurveTable::Full, index));
      return true;
    case Op::EncodeShort:
      encode(encodingOf(shortTable, index));
      return true;
    case Op::EncodeCarried:
      encode(encodingOf(shortTable, carried()));
      return true;
    case Op::EncodeUnclamped:
      encode(withoutClamp(encodingOf(shortTable, index)));
      return true;
    case Op::EncodeNative:
      if (index < 45)
        encode(encodingOf(shortTable, native()));
      return true;
    case Op::EncodeFull:
      encode(encodingOf(CurveTable::Full, index));
      return true;
    case Op::EncodeWorkingLog:
      encode({.curve = Curve::LogC4});
      return true;
    case Op::DecodeWorkingLog:
      decode({.curve = Curve::LogC4});
      return true;
    case Op::EncodeLog113:
      encode({.curve = Curve::Log113, .clamped = true, .low = 0.0f, .high = 1.0f});
      return true;
    case Op::DecodeLog113:
      program.add({.kind = StepKind::Clamp, .low = 0.000001f, .high = infinity});
      decode({.curve = Curve::Log113});
      return true;
    default:
      return false;
    }
  }

  void multiply(const std::optional<Matrix3>& rows)
  {
    if (rows)
      program.add({.kind = StepKind::Matrix, .matrix = *rows});
  }

  bool addGamutStep(Op op)
  {
    switch (op)
    {
    case Op::RgbToXyz:
      multiply(rgbToXyz(index));
      return true;
    case Op::XyzToRgbShort:
      multiply(xyzToRgb(CurveTable::Short, index));
      return true;
    case Op::XyzToRgbFull:
      multiply(xyzToRgb(CurveTable::Full, index));
      return true;
    case Op::GamutToXyz:
      multiply(rgbToXyz(colourspaceOf(gamut)));
      return true;
    case Op::GamutToXyzD65:
      multiply(rounded(*rgbToXyzD65(colourspaceOf(gamut))));
      return true;
    case Op::XyzD65ToGamut:
      multiply(rounded(xyzD65ToRgb(colourspaceOf(gamut))));
      return true;
    case Op::ToLabRounded:
      program.add({.kind = StepKind::ToLab, .labForm = LabForm::Rounded});
      return true;
    case Op::FromLabRounded:
      program.add({.kind = StepKind::FromLab, .labForm = LabForm::Rounded});
      return true;
    case Op::ToLabExact:
      program.add({.kind = StepKind::ToLab, .labForm = LabForm::Exact});
      return true;
    case Op::FromLabExact:
      program.add({.kind = StepKind::FromLab, .labForm = LabForm::Exact});
      return true;
    default:
      return false;
    }
  }

  void range(StepKind kind, const std::optional<Row3>& row)
  {
    if (row)
      program.add({.kind = kind, .luminance = *row});
  }

  void addRangeStep(Op op)
  {
    constexpr auto rowA = LuminancePrecision::RowA;
    constexpr auto rowB = LuminancePrecision::RowB;
    constexpr int cineonIndex = 2;
    constexpr Row3 cineonRow{0.212599993f, 0.715200007f, 0.0722000003f};
    switch (op)
    {
    case Op::CompressA:
      return range(StepKind::Compress, luminanceRow(gamut, rowA));
    case Op::CompressB:
      return range(StepKind::Compress, luminanceRow(gamut, rowB));
    case Op::CompressShort:
      return range(StepKind::Compress, luminanceRow(CurveTable::Short, index));
    case Op::CompressShortCineon:
      return range(StepKind::Compress, index == cineonIndex ? cineonRow : luminanceRow(CurveTable::Short, index));
    case Op::CompressFull:
      return range(StepKind::Compress, luminanceRow(CurveTable::Full, index));
    case Op::ExpandA:
      return range(StepKind::Expand, luminanceRow(gamut, rowA));
    case Op::ExpandB:
      return range(StepKind::Expand, luminanceRow(gamut, rowB));
    case Op::ExpandShort:
      return range(StepKind::Expand, luminanceRow(CurveTable::Short, index));
    case Op::ExpandFull:
      return range(StepKind::Expand, luminanceRow(CurveTable::Full, index));
    case Op::ExpandLinear:
      return range(StepKind::Expand, luminanceRow(linearGamut(index), rowB));
    default:
      return;
    }
  }

  Program& program;
  LinearGamut gamut;
  const ColourArguments& arguments;
  int index;
};

}  // namespace

ColourKernel ColourKernel::named(std::string_view name)
{
  const int row = indexOf(name);
  if (row < 0)
    throw std::invalid_argument("no colour kernel is named " + std::string(name));
  return ColourKernel(row);
}

ColourKernel ColourKernel::forGamut(std::string_view pattern, LinearGamut gamut)
{
  for (size_t i = 0; i < colourRows.size(); ++i)
    if (colourRows[i].gamut == gamut && compositionOf(colourRows[i]).pattern == pattern)
      return ColourKernel(static_cast<int>(i));
  throw std::invalid_argument("no colour kernel of this gamut has the pattern " + std::string(pattern));
}

void runColour(const Queue& queue, ColourKernel kernel, const ColourArguments& arguments)
{
  const ColourRow& row = kernel.entry();
  const Composition& composition = compositionOf(row);
  Program program{
      .from = composition.from,
      .to = composition.to,
      .alpha = composition.alpha,
      .floatsIn = composition.floatsIn ? composition.floatsIn : arguments.channels,
      .floatsOut = composition.floatsOut ? composition.floatsOut : arguments.channels,
      .width = arguments.width,
      .height = arguments.height,
      .sourceWidth = arguments.sourceWidth,
      .offsetX = arguments.offsetX,
      .offsetY = arguments.offsetY,
      .source = arguments.source,
      .destination = arguments.destination,
      .companion = arguments.companion,
      .planes = {arguments.planes[0], arguments.planes[1], arguments.planes[2], arguments.planes[3]},
  };
  Resolver(program, row.gamut, arguments).run(composition);
  runProgram(queue, row.name(), program);
}

}  // namespace morvellan::MORVELLAN_TARGET
