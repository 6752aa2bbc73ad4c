// The fifteen displays and the tone scale, by values worked out in double precision.
#include "film/display.h"

#include <cmath>

#include "tests/film/print_runs.h"
#include "tests/support/film_settings.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace print_runs;

ENGINE_TEST(Display, FifteenEntriesByValue)
{
  const Values expected[displayCount] = {{0.4355363f, 0.4423538f, 0.428719f, 0.7944894f, 0.3647647f, 0.3033564f, 0.01f,
                                          0.5452779f, 0.5341001f, 0.8078436f, 0.7804054f, 0.7969716f},
                                         {0.4420896f, 0.4415675f, 0.4164662f, 0.7979273f, 0.3617967f, 0.288286f, 0.01f,
                                          0.544719f, 0.5207079f, 0.8153234f, 0.7794155f, 0.7814497f},
                                         {0.5018089f, 0.4869416f, 0.4858313f, 0.7847732f, 0.46259f, 0.4063117f, 0.01f,
                                          0.5701566f, 0.5760226f, 0.8210397f, 0.780013f, 0.8035878f},
                                         {0.4855001f, 0.4928832f, 0.4781171f, 0.7683785f, 0.4689824f, 0.3998984f, 0.01f,
                                          0.5764972f, 0.5675368f, 0.8021614f, 0.7870732f, 0.794411f},
                                         {0.4902672f, 0.4923987f, 0.4680856f, 0.7711936f, 0.4678799f, 0.3904869f, 0.01f,
                                          0.5760938f, 0.5566067f, 0.8074463f, 0.7865357f, 0.7823932f},
                                         {0.4355364f, 0.4423538f, 0.428719f, 0.7171868f, 0.458418f, 0.3433164f, 0.01f,
                                          0.5261196f, 0.5294173f, 0.7961813f, 0.7838171f, 0.7939456f},
                                         {0.4060858f, 0.4125698f, 0.3996019f, 0.5459465f, 0.4223663f, 0.3310536f,
                                          0.01000116f, 0.4561845f, 0.4511191f, 0.6505944f, 0.644711f, 0.6464838f},
                                         {0.4060858f, 0.4125698f, 0.3996019f, 0.5637883f, 0.393775f, 0.3316629f,
                                          0.01000116f, 0.4610096f, 0.4510692f, 0.6538655f, 0.6433048f, 0.6467966f},
                                         {0.3767022f, 0.3828535f, 0.3705509f, 0.6445585f, 0.3789291f, 0.2402913f, 0.01f,
                                          0.4639389f, 0.4692874f, 0.7610844f, 0.7507747f, 0.7574897f},
                                         {0.3635081f, 0.3695101f, 0.3575062f, 0.5051627f, 0.3833369f, 0.351512f,
                                          0.1869447f, 0.4203939f, 0.4110822f, 0.546214f, 0.5475678f, 0.5400855f},
                                         {0.3923404f, 0.3986688f, 0.3860121f, 0.5423326f, 0.4144926f, 0.3779124f,
                                          0.2091279f, 0.4500441f, 0.4399569f, 0.6545877f, 0.6537036f, 0.6480778f},
                                         {0.4414687f, 0.4483516f, 0.4345935f, 0.5490294f, 0.456615f, 0.3930173f, 0,
                                          0.4858894f, 0.4785887f, 0.5745939f, 0.5760766f, 0.5687008f},
                                         {0.4624564f, 0.469577f, 0.4553433f, 0.5763867f, 0.4789206f, 0.3982602f, 0.01f,
                                          0.50736f, 0.499371f, 0.656718f, 0.6548853f, 0.6511196f},
                                         {0.4414687f, 0.4483516f, 0.4345935f, 0.5490294f, 0.456615f, 0.3930173f,
                                          0.118174f, 0.4858894f, 0.4785887f, 0.5745939f, 0.5760766f, 0.5687008f},
                                         {0.4624564f, 0.469577f, 0.4553433f, 0.5763867f, 0.4789206f, 0.3982602f,
                                          0.1180429f, 0.50736f, 0.499371f, 0.656718f, 0.6548853f, 0.6511196f}};
  for (int display = 0; display < displayCount; ++display)
  {
    SCOPED_TRACE(testing::Message() << "display " << display);
    expectNear(run("film_print_cuda_out_pfe_display", stock(0, display), colours), expected[display], 5e-7f, "code");
  }
}

// From the dimmest display that the panel allows to the brightest: PQ, HLG and a log encoding.
ENGINE_TEST(Display, PeaksByValue)
{
  struct Row
  {
    int display;
    float peak;
    Values expected;
  };
  for (const Row& row : std::initializer_list<Row>{
           {6,
            1.0f,
            {0.1468913f, 0.1504417f, 0.1433423f, 0.1994247f, 0.1855779f, 0.1749695f, 0.2173261f, 0.2210328f,
             0.212979f}},
           {6,
            203.0f,
            {0.394826f, 0.4011825f, 0.3884694f, 0.5296243f, 0.4073405f, 0.3217697f, 0.5854468f, 0.5825903f,
             0.5810196f}},
           {6,
            1000.0f,
            {0.4074369f, 0.4139362f, 0.4009376f, 0.5479621f, 0.4234573f, 0.329675f, 0.6587587f, 0.6523129f,
             0.6547242f}},
           {8,
            1.0f,
            {0.09590356f, 0.0988766f, 0.09293164f, 0.1380815f, 0.124107f, 0.1150779f, 0.1511963f, 0.1541236f,
             0.1475979f}},
           {8,
            203.0f,
            {0.3592577f, 0.3652116f, 0.3533039f, 0.6204601f, 0.3564495f, 0.2312592f, 0.6820081f, 0.6734415f,
             0.6787394f}},
           {8,
            1000.0f,
            {0.3788345f, 0.38501f, 0.3726591f, 0.6474889f, 0.3804095f, 0.238006f, 0.7703314f, 0.7595049f, 0.7667708f}},
           {10,
            1.0f,
            {0.05480264f, 0.05731034f, 0.05229593f, 0.1094187f, 0.09349855f, 0.08655845f, 0.1352764f, 0.1378416f,
             0.1321218f}},
           {10,
            203.0f,
            {0.3782944f, 0.3844637f, 0.372125f, 0.5250837f, 0.3959037f, 0.3602558f, 0.5903657f, 0.5909038f,
             0.5840739f}},
           {10,
            1000.0f,
            {0.3940102f, 0.4003575f, 0.3876629f, 0.5444274f, 0.4158802f, 0.3788531f, 0.6625105f, 0.6613302f,
             0.6559984f}}})
  {
    SCOPED_TRACE(testing::Message() << "display " << row.display << " at " << row.peak << " cd/m2");
    PrintSettings s = stock(0, row.display);
    s.peak = row.peak;
    const Values light{0.18f, 0.18f, 0.18f, 1.0f, 0.2f, 0.05f, 8.0f, 6.0f, 9.0f};
    expectNear(run("film_print_cuda_out_pfe_display", s, light), row.expected, 5e-7f, "code");
  }
}

ENGINE_TEST(Display, WhitesOfThePrint)
{
  const Values d55[] = {
      {0.2387207f, 0.2718336f, 0.3080884f, 1, 0.1639867f, 0.1289808f, 0.01f, 0.4811951f, 0.5461356f, 1, 1, 1},
      {0.3690725f, 0.3539627f, 0.4162318f, 1, 0.3094258f, 0.2571115f, 0.01f, 0.5396948f, 0.6384378f, 1, 1, 1},
      {0.2681219f, 0.2800427f, 0.2895518f, 0.4934492f, 0.2942612f, 0.2203175f, 0.01f, 0.3506133f, 0.3745712f,
       0.5541209f, 0.5526315f, 0.5806619f}};
  const int displays[] = {0, 2, 11};
  for (size_t i = 0; i < 3; ++i)
    expectNear(run("film_print_cuda_out_pfe", stock(6, displays[i]), colours), d55[i], 5e-7f, "D55");
  EXPECT_EQ(run("film_print_cuda_out_pfe", stock(5), colours), run("film_print_cuda_out_pfe", stock(1), colours));
  EXPECT_EQ(run("film_print_cuda_out_pfe", stock(9), colours), run("film_print_cuda_out_pfe", stock(6), colours));
}

ENGINE_TEST(Display, NeutralsAreTheDisplaysNeutral)
{
  Values greys;
  for (int i = 0; i < 60; ++i)
    greys.insert(greys.end(), 3, std::exp2(static_cast<float>(i) * 0.2f - 8.0f));
  for (int display : {0, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14})
  {
    PrintSettings s = stock(0, display);
    s.density = {.floor = {0, 0, 0}, .ceiling = {1.5f, 1.5f, 1.5f}};
    const Values r = run("film_print_cuda_out_pfe_display", s, greys);
    for (size_t i = 0; i < r.size(); ++i)
      // As far as the digits of the matrices go: 1.7e-5 in double precision for AP1, 4e-6 for the others.
      ASSERT_NEAR(r[i], r[i - i % 3], 2e-5f) << "display " << display << " value " << i;
    for (size_t i = 3; i < r.size(); i += 3)
      ASSERT_GE(r[i], r[i - 3] - 1e-6f) << "display " << display << ": a grey ramp rises";
  }
}

ENGINE_TEST(ToneScale, ScalarsOfAPeak)
{
  const ToneScale sdr = makeToneScale(100.0f);
  EXPECT_NEAR(sdr.ceiling, 1.0427482f, 2e-6f);
  EXPECT_NEAR(sdr.contrast, 1.3472037f, 2e-6f);
  EXPECT_NEAR(sdr.purity, 1.1f, 1e-6f);
  EXPECT_EQ(makeToneScale(1000.0f).purity, 1.0f);
}

PARITY(displays)
{
  Values all;
  for (int display = 0; display < displayCount; ++display)
  {
    const Values r = run("film_print_cuda_out_pfe_display", stock(0, display), settings::everyHue(1000));
    all.insert(all.end(), r.begin(), r.end());
  }
  return all;
}

}  // namespace morvellan::MORVELLAN_TARGET
