// The tables behind the camera and print stocks. A stock is no record at run time: choosing one writes its numbers into
// ordinary parameters, and from then on those parameters are what a render uses.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace morvellan::params
{
// Indices of CameraStock and PrintProfile that are no stock of the tables.
inline constexpr int noStock = 0;
inline constexpr int customStock = 1;
inline constexpr int firstStock = 2;

inline constexpr std::size_t cameraStockCount = 23;  // CameraStock 2 to 24
inline constexpr std::size_t printStockCount = 8;    // PrintProfile 2 to 9

struct Setting
{
  std::string_view name;
  double value;
};

// One parameter's value for each camera stock in index order; NaN where the stock leaves the parameter alone.
struct CameraRow
{
  std::string_view name;
  std::array<double, cameraStockCount> values;
};

struct ToeSet
{
  double pivot, red, green, blue, rgb;
};

// What bleach bypass in the laboratory makes of a camera stock.
struct CameraBleach
{
  double pivot;               // LabBleachPivot
  double bleach;              // the three channels and their master
  std::optional<ToeSet> toe;  // nothing: the toe stays as the stock left it
  double c;                   // shift of the minimum densities
  double k;                   // scale of the maximum densities
};

struct PrintRow
{
  std::string_view name;
  std::array<double, printStockCount> values;
};

struct PrintConstants
{
  double black;
  double white;
  double filmicContrast;
  double bleachPivot;
  double c;  // bleach bypass: shift of the black point
  double k;  // bleach bypass: scale of the white point
};

// What every camera stock writes, and what each writes of its own, in the order of writing.
std::span<const Setting> cameraCommon();
std::span<const CameraRow> cameraRows();
// stock: 2 to 24; throws std::out_of_range otherwise.
const CameraBleach& cameraBleach(int stock);

std::span<const Setting> printCommon();
std::span<const PrintRow> printRows();
// stock: 2 to 9; throws std::out_of_range otherwise.
const PrintConstants& printConstants(int stock);
}  // namespace morvellan::params
