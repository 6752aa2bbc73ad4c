// The rows of every gamut as data, and their lookup.
#include "colour/gamuts.h"

#include <cstdint>
#include <span>

#include "colour/film_space.h"
#include "colour/primaries.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

// Rows shared by a set of colourspace indices, one bit an index.
struct GamutRows
{
  uint64_t indices;
  Matrix3 rows;
};

template <typename... Index>
constexpr uint64_t indices(Index... index)
{
  return ((uint64_t{1} << index) | ...);
}

bool contains(uint64_t set, int colourspace)
{
  return colourspace >= 0 && colourspace < colourspaceCount && (set >> colourspace & 1) != 0;
}

std::optional<Matrix3> find(std::span<const GamutRows> table, int colourspace)
{
  for (const GamutRows& entry : table)
    if (contains(entry.indices, colourspace))
      return entry.rows;
  return std::nullopt;
}

// Rows that more than one table has: BT.2020 both ways, DaVinci Wide Gamut, and the transpose of S-Gamut3.Cine.
constexpr Matrix3 xyzToBt2020{{1.7166512f, -0.35567078f, -0.253366292f, -0.66668433f, 1.61648118f, 0.0157685503f,
                               0.0176398605f, -0.0427706093f, 0.942103148f}};
constexpr Matrix3 bt2020ToXyz{{0.636958063f, 0.144616902f, 0.168880969f, 0.2627002f, 0.677998066f, 0.0593017153f,
                               4.99410659e-17f, 0.0280726925f, 1.06098509f}};
constexpr Matrix3 intermediateToXyz{{0.70062238f, 0.148774818f, 0.101058722f, 0.274118513f, 0.873631895f, -0.147750407f,
                                     -0.0989629105f, -0.137895331f, 1.32591593f}};
constexpr Matrix3 sGamut3CineTransposed{{0.59907347f, 0.215072066f, -0.032065291f, 0.248922691f, 0.885058463f,
                                         -0.0276580807f, 0.102432378f, -0.100130528f, 1.1486237f}};

// CIE XYZ to RGB, short table. Row 15 and 16 is the transpose of S-Gamut3.Cine, and so is its inverse below: the way
// there and back is the identity, but a neutral does not stay neutral.
constexpr GamutRows xyzToRgbShort[] = {
    {indices(0, 1, 2, 3, 27),
     {{3.2404542f, -1.53713846f, -0.498531401f, -0.969265997f, 1.87601078f, 0.0415560007f, 0.0556433983f, -0.204025894f,
       1.05722523f}}},
    {indices(4),
     {{1.04981101f, 0.0f, -9.74845389e-05f, -0.495903015f, 1.37331307f, 0.0982400328f, 0.0f, 0.0f, 0.991252005f}}},
    {indices(5, 6, 7, 8),
     {{1.6410234f, -0.324803293f, -0.236424699f, -0.663662851f, 1.61533153f, 0.0167563502f, 0.0117218904f,
       -0.00828444026f, 0.988394856f}}},
    {indices(10, 28, 29, 30, 42, 44), xyzToBt2020},
    {indices(11),
     {{1.78906596f, -0.482533991f, -0.200075999f, -0.639849007f, 1.39639997f, 0.194432005f, -0.0415319987f,
       0.0823350027f, 0.878867984f}}},
    {indices(12),
     {{1.41280663f, -0.177522376f, -0.151770383f, -0.486203194f, 1.29069626f, 0.15740028f, -0.0371387787f, 0.286375761f,
       0.687679589f}}},
    {indices(13, 14),
     {{1.50739992f, -0.245822132f, -0.171611682f, -0.5181517f, 1.35539126f, 0.125878662f, 0.0155117055f,
       -0.00787277613f, 0.911916375f}}},
    {indices(15, 16),
     {{1.84681118f, -0.444158286f, 0.0408610478f, -0.525995314f, 1.25945723f, 0.0156430472f, -0.210548893f,
       0.149401665f, 0.868326843f}}},
    {indices(17),
     {{1.37461567f, -0.146550879f, -0.161545679f, -0.499432534f, 1.3311044f, 0.143412426f, 0.0321134962f,
       -0.0196423382f, 0.980397344f}}},
    {indices(18),
     {{1.68908775f, -0.406265467f, -0.201062903f, -0.429466426f, 1.23887336f, 0.168766722f, 0.0538142212f,
       0.0063436348f, 0.934146464f}}},
    {indices(19),
     {{1.58901298f, -0.313203931f, -0.180964962f, -0.534054518f, 1.39601219f, 0.102457874f, 0.0111793969f,
       0.0031936029f, 0.905535698f}}},
    {indices(20, 22, 24),
     {{1.47372198f, -0.272462726f, -0.130322561f, -0.459901422f, 1.26377022f, 0.17282778f, -0.0705090016f, 0.222695097f,
       0.837087572f}}},
    {indices(21, 23, 25),
     {{1.34363723f, -0.177220732f, -0.101890735f, -0.423860013f, 1.29135394f, 0.111451112f, -0.109249778f, 0.301274031f,
       0.795779467f}}},
    {indices(26),
     {{1.72570002f, -0.431400001f, -0.191699997f, -0.602500021f, 1.39059997f, 0.167099997f, -0.0155999996f,
       0.0904999971f, 0.84890002f}}},
    {indices(31),
     {{2.40374064f, -0.897857368f, -0.388214737f, -0.832383037f, 1.76881397f, 0.0237071123f, 0.0388573632f,
       -0.0825718939f, 1.03727567f}}},
    {indices(32, 43),
     {{2.49349689f, -0.93138361f, -0.402710766f, -0.829488993f, 1.76266408f, 0.0236246902f, 0.035845831f,
       -0.0761723891f, 0.956884503f}}},
    {indices(33),
     {{2.72539401f, -1.01800299f, -0.440163195f, -0.795168042f, 1.68973207f, 0.0226471908f, 0.0412418917f,
       -0.0876390189f, 1.10092938f}}},
    {indices(34),
     {{2.42239404f, -0.904824972f, -0.391227365f, -0.831676662f, 1.76731288f, 0.0236869939f, 0.038207747f,
       -0.0811914653f, 1.01993465f}}},
    {indices(35),
     {{2.52540445f, -1.11035466f, -0.292877346f, -0.484587818f, 1.36828637f, 0.0925376564f, 0.25750038f, -0.140301526f,
       0.887165368f}}},
    {indices(36),
     {{2.56106257f, -1.11859977f, -0.31837666f, -0.749928355f, 1.60790515f, 0.105579451f, 0.06637384f, -0.0515443608f,
       0.979667842f}}},
    {indices(37),
     {{2.76063728f, -1.20396459f, -0.422219634f, -0.815230191f, 1.74065745f, 0.0356537886f, 0.0663722605f,
       -0.0515435711f, 0.979668558f}}},
    {indices(38),
     {{2.39007115f, -1.02192521f, -0.25273633f, -0.619916439f, 1.45671213f, 0.132677898f, 0.122173652f, -0.0518762209f,
       0.927304327f}}},
    {indices(39),
     {{2.69908595f, -1.15410137f, -0.413522929f, -0.721029997f, 1.66226375f, 0.0244072899f, 0.12217439f, -0.0518761091f,
       0.927303553f}}},
    {indices(40),
     {{3.20971298f, -1.55751693f, -0.495827764f, -0.970987201f, 1.88517308f, 0.0394856483f, 0.0597168691f,
       -0.210083023f, 1.14310586f}}},
    {indices(41),
     {{2.24485135f, -0.84875536f, -0.287258327f, -0.360180557f, 1.24466479f, 0.0975987613f, -0.217345878f, 0.34633702f,
       0.853187144f}}},
    {indices(45),
     {{1.51667202f, -0.281478047f, -0.146963626f, -0.464917094f, 1.25142372f, 0.174884602f, 0.0648490489f, 0.109139346f,
       0.761414647f}}},
};

// CIE XYZ to RGB, where the full table has other rows than the short one, or rows at all. Index 13 has those of
// BT.2020; 34 and 40 those of BT.709.
constexpr GamutRows xyzToRgbFull[] = {
    {indices(0, 1, 2, 3, 27, 34, 40),
     {{3.2409699f, -1.5373832f, -0.498610765f, -0.969243646f, 1.8759675f, 0.0415550582f, 0.0556300804f, -0.203976959f,
       1.05697155f}}},
    {indices(5, 6, 7, 8),
     {{1.6410234f, -0.324803293f, -0.236424699f, -0.663662851f, 1.61533165f, 0.0167563483f, 0.0117218941f,
       -0.00828444213f, 0.988394856f}}},
    {indices(13), xyzToBt2020},
    {indices(14),
     {{1.52505279f, -0.315913528f, -0.122658275f, -0.509152532f, 1.33332729f, 0.138284355f, 0.095715344f, 0.0508974381f,
       0.787955701f}}},
    {indices(15),
     {{1.38554358f, -0.225950181f, -0.157738805f, -0.476264983f, 1.34856045f, 0.121110022f, 0.0142577523f,
       -0.00766828191f, 0.912059128f}}},
    {indices(16),
     {{1.84677899f, -0.525986135f, -0.210545212f, -0.444153249f, 1.25944293f, 0.149399966f, 0.0408554226f,
       0.0156408902f, 0.868207276f}}},
    {indices(41),
     {{2.26848483f, -0.834900796f, -0.294928044f, -0.355556428f, 1.24062979f, 0.089352265f, -0.219937846f, 0.348387122f,
       0.790274322f}}},
    {indices(47), xyzToAwg4},
    {indices(48),
     {{1.86638319f, -0.518397391f, -0.234609738f, -0.600341797f, 1.37814856f, 0.176731363f, 0.00245160982f,
       0.0864001513f, 0.836942613f}}},
};

// RGB to CIE XYZ in the gamut's own white, short table.
constexpr GamutRows rgbToXyzShort[] = {
    {indices(0, 1, 2, 3, 27),
     {{0.412456393f, 0.357576102f, 0.180437505f, 0.212672904f, 0.715152204f, 0.0721750036f, 0.0193339009f, 0.119191997f,
       0.950304091f}}},
    {indices(4),
     {{0.952552378f, 0.0f, 0.0000936786309f, 0.343966454f, 0.728166103f, -0.0721325427f, 0.0f, 0.0f, 1.00882518f}}},
    {indices(5, 6, 7, 8),
     {{0.662454188f, 0.134004205f, 0.156187683f, 0.272228718f, 0.674081743f, 0.0536895208f, -0.00557465013f,
       0.00406072987f, 1.01033914f}}},
    {indices(10, 28, 29, 30, 42, 44), bt2020ToXyz},
    {indices(11),
     {{0.638007998f, 0.214704007f, 0.0977440029f, 0.291954011f, 0.823840976f, -0.115795001f, 0.00279799988f,
       -0.0670339987f, 1.15329397f}}},
    {indices(12),
     {{0.735274971f, 0.0686089993f, 0.146570995f, 0.28669399f, 0.842979014f, -0.129673004f, -0.0796810016f,
       -0.347342998f, 1.51608205f}}},
    {indices(13, 14),
     {{0.706482708f, 0.128801048f, 0.115172163f, 0.270979673f, 0.786606431f, -0.0575860813f, -0.00967784971f,
       0.00460004015f, 1.09413552f}}},
    {indices(15, 16), sGamut3CineTransposed},
    {indices(17),
     {{0.755686402f, 0.0848532543f, 0.112106442f, 0.285585165f, 0.781705081f, -0.0672902316f, -0.0190312322f,
       0.0128821032f, 1.01497436f}}},
    {indices(18),
     {{0.642261624f, 0.210104272f, 0.100280181f, 0.22789678f, 0.882484734f, -0.110381484f, -0.0385469571f,
       -0.0180964768f, 1.06546867f}}},
    {indices(19),
     {{0.679643989f, 0.152210996f, 0.118600003f, 0.26068601f, 0.774893999f, -0.0355800018f, -0.00930999964f,
       -0.00461200019f, 1.10298002f}}},
    {indices(20, 22, 24),
     {{0.72685802f, 0.141929999f, 0.0838580728f, 0.26581043f, 0.873061836f, -0.138872251f, -0.00949081965f,
       -0.220310584f, 1.2386266f}}},
    {indices(21, 23, 25),
     {{0.77863282f, 0.0864215195f, 0.0875917301f, 0.254665345f, 0.828803837f, -0.0834691972f, 0.0104820626f,
       -0.301912218f, 1.3002553f}}},
    {indices(26),
     {{0.648199975f, 0.194000006f, 0.108199999f, 0.282999992f, 0.813199997f, -0.0961999968f, -0.0183000006f,
       -0.0832000002f, 1.19029999f}}},
    {indices(31),
     {{0.504739642f, 0.264744014f, 0.18285501f, 0.237524539f, 0.689333439f, 0.0731419995f, 0.0f, 0.0449565314f,
       0.963036358f}}},
    {indices(32, 43),
     {{0.486570954f, 0.265667707f, 0.198217288f, 0.228974566f, 0.691738546f, 0.0792869106f, -3.97207564e-17f,
       0.045113381f, 1.04394436f}}},
    {indices(33),
     {{0.445169806f, 0.277134418f, 0.172282666f, 0.209491685f, 0.721595228f, 0.0689130649f, -3.63410122e-17f,
       0.0470605604f, 0.907355368f}}},
    {indices(34),
     {{0.500852942f, 0.264968872f, 0.185963929f, 0.235695481f, 0.689918935f, 0.074385576f, 0.0f, 0.0449947119f,
       0.979410052f}}},
    {indices(35),
     {{0.458160907f, 0.383204818f, 0.111280352f, 0.169442102f, 0.864828229f, -0.0342703015f, -0.106184967f,
       0.0255435295f, 1.08946657f}}},
    {indices(36),
     {{0.487830102f, 0.343273669f, 0.121542297f, 0.228903815f, 0.780859828f, -0.00976364035f, -0.02100759f,
       0.0178269893f, 1.01200581f}}},
    {indices(37),
     {{0.451694667f, 0.317846715f, 0.183104694f, 0.211947873f, 0.723019779f, 0.0650323629f, -0.0194509104f,
       0.0165064204f, 1.01176965f}}},
    {indices(38),
     {{0.507014811f, 0.358778358f, 0.086852923f, 0.220724016f, 0.839188039f, -0.0599120781f, -0.0544519387f,
       -0.000322825363f, 1.06359994f}}},
    {indices(39),
     {{0.446215421f, 0.315755725f, 0.190674961f, 0.194255799f, 0.738556862f, 0.0671873391f, -0.0479226708f,
       -0.000284488575f, 1.05703235f}}},
    {indices(40),
     {{0.418775082f, 0.364827245f, 0.169043735f, 0.215325862f, 0.716008127f, 0.0686659887f, 0.0176959746f, 0.112530969f,
       0.878598213f}}},
    {indices(41),
     {{0.508144259f, 0.308732271f, 0.135769501f, 0.141396865f, 0.915751934f, -0.0571490377f, 0.072049953f,
       -0.293085873f, 1.22986114f}}},
    {indices(45), intermediateToXyz},
};

// RGB to CIE XYZ with the source white carried to D65, for the film working space, where that is not the short table's
// row already. 31 and 33 have the rows of their own white there and are adapted by computation; 47 is the film gamut
// itself.
constexpr GamutRows rgbToXyzFilm[] = {
    {indices(0, 1, 2, 3, 27, 34, 40),
     {{0.412390798f, 0.357584327f, 0.180480793f, 0.212639004f, 0.715168655f, 0.0721923187f, 0.0193308182f, 0.119194783f,
       0.950532138f}}},
    {indices(4, 9),
     {{0.938279808f, -0.00445147604f, 0.0166275389f, 0.337368399f, 0.7295205f, -0.0668903664f, 0.00117394805f,
       -0.0037106981f, 1.09159386f}}},
    {indices(5, 6, 7, 8),
     {{0.652237535f, 0.1282361f, 0.169982255f, 0.267671794f, 0.674338996f, 0.0579877384f, -0.00538181374f,
       0.00136906456f, 1.09306991f}}},
    {indices(13), bt2020ToXyz},
    {indices(14),
     {{0.705396831f, 0.16404134f, 0.081017755f, 0.280130714f, 0.820206702f, -0.100337379f, -0.103781514f,
       -0.0729072616f, 1.26574659f}}},
    {indices(15),
     {{0.764827132f, 0.128801048f, 0.115172163f, 0.270979673f, 0.786606431f, -0.0575860813f, -0.00967784505f,
       0.00460003735f, 1.09413552f}}},
    {indices(16), rounded(transposed(widen(sGamut3CineTransposed)))},
    {indices(17),
     {{0.743982255f, 0.0791959092f, 0.127277717f, 0.280272961f, 0.782582939f, -0.062857382f, -0.0197191332f,
       0.0102115022f, 1.09856474f}}},
    {indices(18),
     {{0.632047951f, 0.201736584f, 0.116671339f, 0.223234385f, 0.882433474f, -0.105669357f, -0.0408826806f,
       -0.0234263614f, 1.15336621f}}},
    {indices(20, 22, 24),
     {{0.715795279f, 0.131264761f, 0.103395849f, 0.26073131f, 0.872433066f, -0.133165836f, -0.00938726403f,
       -0.242318541f, 1.34076297f}}},
    {indices(21, 23, 25),
     {{0.76729542f, 0.0754342005f, 0.107726291f, 0.24927856f, 0.828079581f, -0.0773596168f, 0.0124328798f,
       -0.330530435f, 1.40715468f}}},
    {indices(35),
     {{0.4495776f, 0.373429567f, 0.127448723f, 0.165710017f, 0.86366123f, -0.0293727126f, -0.114313893f, 0.0244002286f,
       1.17897081f}}},
    {indices(36),
     {{0.479863107f, 0.334398806f, 0.136193991f, 0.225510895f, 0.779798925f, -0.00531131122f, -0.0223910809f,
       0.0163586084f, 1.09508967f}}},
    {indices(37),
     {{0.444317818f, 0.309629232f, 0.196508855f, 0.208806276f, 0.722037435f, 0.0691547766f, -0.0207318719f,
       0.0151467985f, 1.09464228f}}},
    {indices(38),
     {{0.498319119f, 0.349059284f, 0.103077479f, 0.216991857f, 0.8380211f, -0.0550144427f, -0.0584665351f,
       -0.00352328247f, 1.15104699f}}},
    {indices(39),
     {{0.438562483f, 0.307202071f, 0.204691306f, 0.190971181f, 0.737529814f, 0.0714974925f, -0.0514558852f,
       -0.00310119288f, 1.14361417f}}},
    {indices(41),
     {{0.501918018f, 0.294524014f, 0.154014006f, 0.138172999f, 0.913552999f, -0.0517250001f, 0.0787739977f,
       -0.320766002f, 1.331049f}}},
    {indices(44), intermediateToXyz},
    {indices(46),
     {{0.953187406f, -0.0265906006f, 0.0238731001f, -0.0382466987f, 1.02884054f, 0.00940600038f, 0.00260680006f,
       -0.00303320005f, 1.08925653f}}},
    {indices(48),
     {{0.606530011f, 0.220407993f, 0.123479001f, 0.26798901f, 0.832731009f, -0.100720003f, -0.0294419993f,
       -0.0866110027f, 1.20486104f}}},
};

// CIE XYZ at D65 to D60, and the indices whose gamuts are reached through it on the way out of the film working space.
constexpr Matrix3 d65ToD60{{1.01303494f, 0.00610530889f, -0.0149709629f, 0.00769822951f, 0.998164833f, -0.00503203413f,
                            -0.00284131244f, 0.00468515558f, 0.924506664f}};
constexpr uint64_t adaptedToD60 = indices(4, 5, 6, 7, 8, 9, 17, 18, 20, 21, 22, 23, 24, 25, 35, 36, 37, 38, 39);

constexpr int adxIndex = 9;
constexpr int p3D60Index = 31;
constexpr int p3DciIndex = 33;
constexpr int logC4Index = 47;

// 31 and 33 still in their own white.
std::optional<Matrix3> filmRows(int colourspace)
{
  const std::optional<Matrix3> rows = find(rgbToXyzFilm, colourspace);
  return rows ? rows : find(rgbToXyzShort, colourspace);
}

Row3 middleRow(const Matrix3& k)
{
  return {k.m[3], k.m[4], k.m[5]};
}

}  // namespace

std::optional<Matrix3> xyzToRgb(CurveTable table, int colourspace)
{
  const std::optional<Matrix3> full = table == CurveTable::Full ? find(xyzToRgbFull, colourspace) : std::nullopt;
  return full ? full : find(xyzToRgbShort, colourspace);
}

std::optional<Matrix3> rgbToXyz(int colourspace)
{
  return find(rgbToXyzShort, colourspace);
}

std::optional<DoubleMatrix3> rgbToXyzD65(int colourspace)
{
  const std::optional<Matrix3> rows = filmRows(colourspace);
  if (!rows)
    return std::nullopt;
  if (colourspace != p3D60Index && colourspace != p3DciIndex)
    return widen(*rows);
  const Chromaticity white = colourspace == p3D60Index ? whiteD60 : whiteDci;
  return product(bradford(white, whiteD65), widen(*rows));
}

DoubleMatrix3 xyzD65ToRgb(int colourspace)
{
  DoubleMatrix3 adaptation = widen(identityMatrix);
  if (contains(adaptedToD60, colourspace))
    adaptation = widen(d65ToD60);
  else if (colourspace == p3D60Index || colourspace == p3DciIndex)
    adaptation = bradford(whiteD65, colourspace == p3D60Index ? whiteD60 : whiteDci);
  const int gamut = colourspace == adxIndex ? colourspaceOf(LinearGamut::AcesAp0) : colourspace;
  const std::optional<Matrix3> rows = xyzToRgb(CurveTable::Full, gamut);
  return rows ? product(widen(*rows), adaptation) : adaptation;
}

std::optional<Row3> luminanceRow(CurveTable table, int colourspace)
{
  if (table == CurveTable::Full && colourspace == logC4Index)
    return awg4Luminance;
  const int gamut = colourspace == adxIndex ? colourspaceOf(LinearGamut::AcesAp0) : colourspace;
  const std::optional<Matrix3> rows = table == CurveTable::Short ? find(rgbToXyzShort, gamut) : filmRows(gamut);
  return rows ? std::optional(middleRow(*rows)) : std::nullopt;
}

LinearGamut linearGamut(int colourspace)
{
  switch (colourspace)
  {
  case 4:
    return LinearGamut::AcesAp0;
  case 5:
    return LinearGamut::AcesAp1;
  case 30:
    return LinearGamut::Rec2020;
  default:
    return LinearGamut::Rec709;
  }
}

int colourspaceOf(LinearGamut gamut)
{
  constexpr int indexOf[] = {0, 30, 4, 5};
  return indexOf[static_cast<int>(gamut)];
}

Row3 luminanceRow(LinearGamut gamut, LuminancePrecision precision)
{
  const bool rowA = precision == LuminancePrecision::RowA;
  switch (gamut)
  {
  case LinearGamut::Rec709:
    return rowA ? Row3{0.212640002f, 0.715170026f, 0.0721900016f} : Row3{0.212639004f, 0.715168655f, 0.0721923187f};
  case LinearGamut::Rec2020:
    return rowA ? Row3{0.262699991f, 0.677999973f, 0.0593000017f} : Row3{0.2627002f, 0.677998066f, 0.0593017153f};
  case LinearGamut::AcesAp0:
    return {0.343966454f, 0.728166103f, -0.0721325427f};
  case LinearGamut::AcesAp1:
    return {0.272228718f, 0.674081743f, 0.0536895171f};
  }
  return {};
}

}  // namespace morvellan::MORVELLAN_TARGET
