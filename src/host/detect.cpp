#include "host/detect.h"

#include "text/fields.h"

namespace kem::host {
using namespace load;
using namespace text;
namespace {

// ------------------------------------------------------------ formats

// A reader that needs nothing but the main stream.
template <int (PrnType::*Read)(std::ifstream&)>
int FromMain(PrnType& record, LoadState& state) {
  return (record.*Read)(state.main);
}

// Lists the items of the main stream.
template <void (*List)(std::istream&, ItemList&)>
void ListMain(LoadState& state, ItemList& items) {
  List(state.main, items);
}

constexpr Format kP3D{"P3D text grid", FromMain<&PrnType::ReadP3D>};
constexpr Format kB3D{"B3D binary grid", FromMain<&PrnType::ReadB3D>};
constexpr Format kB2D{"B2D binary curve", FromMain<&PrnType::ReadB2D>};
constexpr Format kP2D{"P2D text curve", FromMain<&PrnType::ReadP2D>};
constexpr Format kCvt{"CVT curve", FromMain<&PrnType::ReadCvt>};
constexpr Format kCaryDSW{"Cary DSW", FromMain<&PrnType::ReadCaryDSWFile>};
constexpr Format kBruker{"Bruker ESR spc/par",
                         [](PrnType& record, LoadState& state) {
                           if (state.pairRole == 0)
                             return record.ReadBruker(state.main, state.partner, state.index);
                           return record.ReadBruker(state.partner, state.main, state.index);
                         },
                         Pairing::Bruker};
constexpr Format kDilor{"Dilor Raman",
                        [](PrnType& record, LoadState& state) {
                          if (state.multi3D) return record.ReadDilorM3D(state.main, state.count, state.index);
                          return record.ReadDilorSingle(state.main);
                        },
                        Pairing::None, 1, ListMain<ListDilorSeries>};
constexpr Format kImage{"ICCD or HPDTA image", [](PrnType& record, LoadState& state) {
                          if (record.ReadIccdImg(state.main) != 0) return 1;
                          return record.ReadHPDTA(state.main);
                        }};
constexpr Format kHPDTAProfile{"HPDTA profile", FromMain<&PrnType::ReadHPDTAProfile>};
constexpr Format kCary45{"Cary 45",
                         [](PrnType& record, LoadState& state) {
                           if (Contains(state.name, ".dhd")) return record.ReadCary45(state.main, state.partner);
                           return record.ReadCary45(state.partner, state.main);
                         },
                         Pairing::Cary45};
constexpr Format kBES3T{"Bruker BES3T",
                        [](PrnType& record, LoadState& state) {
                          state.main.close();
                          return record.ReadBES3T(state.name.c_str(), state.count, state.index);
                        },
                        Pairing::None, 1};
constexpr Format kIccdCurve{
    "ICCD curve",
    [](PrnType& record, LoadState& state) { return record.ReadIccdCrv(state.main, state.count, state.index); },
    Pairing::None, 0, ListMain<ListIccdCurves>};
constexpr Format kNPico{"NPico scan", FromMain<&PrnType::ReadNPico>};
constexpr Format kHama{"Hamamatsu raw image", FromMain<&PrnType::ReadHama>};
constexpr Format kCaryPrn{"Cary absorption prn", FromMain<&PrnType::ReadCaryPrn>};
constexpr Format kAT1{"AT1 image", FromMain<&PrnType::ReadAT1>};
constexpr Format kOMA{
    "EG&G OMA",
    [](PrnType& record, LoadState& state) { return record.ReadOMA(state.main, state.count, state.index); },
    Pairing::None, 1, ListMain<ListOMA>};
constexpr Format kXY{"XY, NXY or JCAMP-DX",
                     [](PrnType& record, LoadState& state) {
                       if (state.nxy) return record.ReadNXYPrn(state.main, state.count, state.index);
                       if (state.jcamp) return record.ReadDX(state.main);
                       return record.ReadXYPrn(state.main);
                     },
                     Pairing::None, 1, ListMain<ListNXY>};

// ------------------------------------------------------------ tests

constexpr auto SetMulti3D = [](LoadState& state) { state.multi3D = true; };
constexpr auto SetNXY = [](LoadState& state) { state.nxy = true; };
constexpr auto SetJcamp = [](LoadState& state) { state.jcamp = true; };
constexpr auto SetOMA = [](LoadState& state) { state.oma = true; };
constexpr auto SetParameterFile = [](LoadState& state) { state.pairRole = 0; };
constexpr auto SetValueFile = [](LoadState& state) { state.pairRole = 1; };

// Searched in the whole name, folders included: a folder named run.cvt makes CVT files of all it holds.
constexpr Test kNameTests[] = {
    {".p3d", &kP3D},
    {".b3d", &kB3D},
    {".b2d", &kB2D},
    {".p2d", &kP2D},
    {".cvt", &kCvt},
    {".dsw", &kCaryDSW},
    {".DSW", &kCaryDSW},
    {".par", &kBruker, SetParameterFile},
    {".spc", &kBruker, SetValueFile},
    {".PAR", &kBruker, SetParameterFile},
    {".SPC", &kBruker, SetValueFile},
    {".ms0", &kDilor},
    {".ss0", &kDilor},
    {".msu", &kDilor},
    {".img", &kImage},
    {".IMG", &kImage},
    {".prf", &kHPDTAProfile},
    {".dhd", &kCary45},
    {".m3d", &kDilor, SetMulti3D},
    {".DSC", &kBES3T},
    {".DTA", &kBES3T},
    {".CRV", &kIccdCurve},
    {".crv", &kIccdCurve},
};

// Searched in the first 131 bytes.
constexpr Test kContentTests[] = {
    {"Varian UV-VIS-NIR", &kCaryDSW},
    {"[Monochromator]", &kNPico},
    {";\"HiPic 5.0", &kHPDTAProfile},
    {"[TimeScan]", &kNPico},
    {"[DcDelay]", &kNPico},
    {"HPK8TMAP", &kHama},
    {"Multi-3D", &kDilor, SetMulti3D},
    {"Filename", &kCaryPrn},
    {"CARY-45", &kCary45},
    {"##TITLE", &kXY, SetJcamp},
    {"Version", &kDilor},
    {"[Delay]", &kNPico},
    {"SIMPLE", &kAT1},
    {"#DESC", &kBES3T},
    {"[P3D]", &kP3D},
    {"[B3D]", &kB3D},
    {"[B2D]", &kB2D},
    {"[P2D]", &kP2D},
    {"EG&G", &kOMA, SetOMA},
    {"JSS", &kBruker, SetParameterFile},
    {"yaw", &kCvt},
    {"yat", &kCvt},
    {"NXY", &kXY, SetNXY},
    {"XY", &kXY},
    {"XY:", &kCvt},  // never gets its turn behind "XY"; its place is kept
    {"pa", &kCvt},
    {"ra", &kCvt},
    {"la", &kCvt},
    {"ca", &kCvt},
    {"IM", &kImage},
};

static_assert(std::size(kNameTests) == 23 && std::size(kContentTests) == 30);
static_assert(FirstHit(kContentTests, "XY: 1 2")->format == &kXY);
static_assert(FirstHit(kNameTests, "run.cvt/a.txt")->format == &kCvt);

}  // namespace

std::span<const Test> NameTests() { return kNameTests; }
std::span<const Test> ContentTests() { return kContentTests; }
const Format& PlainColumns() { return kXY; }

}  // namespace kem::host
