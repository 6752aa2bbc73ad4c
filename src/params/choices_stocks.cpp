// The camera and print stocks as the user picks them: labels and hints in index order.
// What a stock writes stands in the stock tables.
#include "params/choices.h"

namespace morvellan::params
{
std::span<const Option> cameraStocks()
{
  static const std::vector<Option> list{
      {"None", "Bypass Cine Film Stock Profile"},
      {"Custom", "Custom Cine Film Stock Profile. Load a Custom Cine Film Stock Profile created | edited | saved "
                 "through Morvellan"},
      {"Agfa XT 125, 125T. Ver-A",
       "Agfa XT 125 (35mm / 16mm) Cine Color Negative Stock. 125 ASA, Tungsten balanced (3200 K)"},
      {"Agfa XTR 250, 250T. Ver-A",
       "Agfa XTR 250 (35mm / 16mm) Cine Color Negative Stock. 250 ASA, Tungsten balanced (3200 K)"},
      {"Fuji-8522, 64D. Ver-A",
       "Fujifilm F-Series 8522 / 8622 (35mm / 16mm) Cine Color Negative Stock. 64 ASA, Daylight balanced (5500 K)"},
      {"Fuji-8543, 160T. Ver-A", "Fujifilm Eterna Vivid 8543 / 8643 (35mm / 16mm) Cine Color Negative Stock. 160 ASA, "
                                 "Tungsten balanced (3200 K)"},
      {"Fuji-8553, 250T. Ver-A",
       "Fujifilm Eterna 8553 / 8653 (35mm / 16mm) Cine Color Negative Stock. 250 ASA, Tungsten balanced (3200 K)"},
      {"Fuji-8563, 250D. Ver-A",
       "Fujifilm Eterna 8563 / 8663 (35mm / 16mm) Cine Color Negative Stock. 250 ASA, Daylight balanced (5500 K)"},
      {"Fuji-8583, 400T. Ver-A",
       "Fujifilm Eterna 8583 / 8683 (35mm / 16mm) Cine Color Negative Stock. 400 ASA, Tungsten balanced (3200 K)"},
      {"Fuji-8548, 400T. Ver-A",
       "Fujifilm Eterna 8548 / 8648 (35mm / 16mm) Cine Color Negative Stock. 400 ASA, Tungsten balanced (3200 K)"},
      {"Fuji-8573, 500T. Ver-A",
       "Fujifilm Eterna 8573 / 8673 (35mm / 16mm) Cine Color Negative Stock. 500 ASA, Tungsten balanced (3200 K)"},
      {"Fuji-8547, 500T. Ver-A", "Fujifilm Eterna Vivid 8547 / 8647 (35mm / 16mm) Cine Color Negative Stock. 500 ASA, "
                                 "Tungsten balanced (3200 K)"},
      {"Fuji-8592, 500D. Ver-A",
       "Fujifilm Reala 8592 / 8692 (35mm / 16mm) Cine Color Negative Stock. 500 ASA, Daylight balanced (5500 K)"},
      {"EK-5201, 50D. Ver-A",
       "Eastman Kodak Vision2 5201 / 7201 (35mm / 16mm) Cine Color Negative Stock. 50 ASA, Daylight balanced (5500 K)"},
      {"EK-5203, 50D. Ver-A",
       "Eastman Kodak Vision3 5203 / 7203 (35mm / 16mm) Cine Color Negative Stock. 50 ASA, Daylight balanced (5500 K)"},
      {"EK-5212, 100T. Ver-A", "Eastman Kodak Vision2 5212 / 7212 (35mm / 16mm) Cine Color Negative Stock. 100 ASA, "
                               "Tungsten balanced (3200 K)"},
      {"EK-5213, 200T. Ver-A", "Eastman Kodak Vision3 5213 / 7213 (35mm / 16mm) Cine Color Negative Stock. 200 ASA, "
                               "Tungsten balanced (3200 K)"},
      {"EK-5217, 200T. Ver-A", "Eastman Kodak Vision2 5217 / 7217 (35mm / 16mm) Cine Color Negative Stock. 200 ASA, "
                               "Tungsten balanced (3200 K)"},
      {"EK-5274, 200T. Ver-A",
       "Eastman Kodak Vision 5274 / 7274 (35mm / 16mm) Cine Color Negative Stock. 200 ASA, Tungsten balanced (3200 K)"},
      {"EK-5207, 250D. Ver-A", "Eastman Kodak Vision3 5207 / 7207 (35mm / 16mm) Cine Color Negative Stock. 250 ASA, "
                               "Daylight balanced (5500 K)"},
      {"EK-5219, 500T. Ver-A", "Eastman Kodak Vision3 5219 / 7219 (35mm / 16mm) Cine Color Negative Stock. 500 ASA, "
                               "Tungsten balanced (3200 K)"},
      {"EK-5279, 500T. Ver-A",
       "Eastman Kodak Vision 5279 / 7279 (35mm / 16mm) Cine Color Negative Stock. 500 ASA, Tungsten balanced (3200 K)"},
      {"EK-5229, 500T. Ver-A", "Eastman Kodak Vision2 Expression 5229 / 7229 (35mm / 16mm) Cine Color Negative Stock. "
                               "500 ASA, Tungsten balanced (3200 K)"},
      {"EK-7268, 32T | 25D. Ver-A",
       "Eastman Kodak KODACHROME 40 Movie 7268 / 7270 (Super 8 / 16mm) Cine Color Reversal Stock. 32 ASA, Tungsten "
       "balanced (3200 K), 25 ASA, Daylight balanced (5500 K)"},
      {"EK-7294, 100D. Ver-A",
       "Eastman Kodak EKTACHROME 7294 (Super 8 / 16mm) Cine Color Reversal Stock. 100 ASA, Daylight balanced (5500 K)"},
  };
  return list;
}

std::span<const Option> printStocks()
{
  static const std::vector<Option> list{
      {"None", "Bypass a Cine Print Stock Profile"},
      {"Custom", "Custom Cine Print Stock Profile. Load a Custom Cine Print Film Stock Profile created | edited | "
                 "saved through Morvellan"},
      {"EK-2383, D65. Ver-A",
       "Eastman Kodak 2383 / 3383 Vision (35mm / 16mm) Cine Print Stock. White point D65 (6504 K)"},
      {"EK-2393, D65. Ver-A", "Eastman Kodak 2393 Vision Premiere (35mm) Cine Print Stock. White point D65 (6504 K)"},
      {"Fuji-DI, D65. Ver-A",
       "Fujifilm Eterna-CP 3513 / 3613 DI | 3514 / 3614 DI (35mm / 16mm) Cine Print Stock. White point D65 (6504 K)"},
      {"Fuji-XD, D65. Ver-A", "Fujifilm Eterna-CP 3521 / 3523 XD (35mm) Cine Print Stock. White point D65 (6504 K)"},
      {"EK-2383, D55. Ver-A",
       "Eastman Kodak 2383 / 3383 Vision (35mm / 16mm) Cine Print Stock. White point D55 (5503 K)"},
      {"EK-2393, D55. Ver-A", "Eastman Kodak 2393 Vision Premiere (35mm) Cine Print Stock. White point D55 (5503 K)"},
      {"Fuji-DI, D55. Ver-A",
       "Fujifilm Eterna-CP 3513 / 3613 DI | 3514 / 3614 DI (35mm / 16mm) Cine Print Stock. White point D55 (5503 K)"},
      {"Fuji-XD, D55. Ver-A", "Fujifilm Eterna-CP 3521 / 3523 XD (35mm) Cine Print Stock. White point D55 (5503 K)"},
  };
  return list;
}
}  // namespace morvellan::params
