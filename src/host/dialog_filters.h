// What the file dialogs of all platforms show.
#pragma once

namespace kem::host {

inline constexpr const char kDialogTitle[] = "Select a File";

struct DialogFilter {
  const char* description;
  const char* patterns;  // separated by ';'
};

// The dialog opens with the first. The slips are part of the texts and stay: the tabs, "*p2d" without its dot,
// the comma of "*.ss0,*.msu", and no "*.p3d" in the first list.
inline constexpr DialogFilter kDialogFilters[] = {
    {"Exp Files",
     "*.spc;*.par;*.esr;*.DSC;*.DTA;\t\t*.img;*.prf;*.str;*.dhd;*.m3d;*.ms0;*.ss0;*.msu;*.dat;*.cvt;*.prn;"
     "\t\t*.b3d;*p2d;*.b2d;*.dsw;*.crv"},
    {"\t\tBruker X-band (*.spc;*.par;*.esr)", "*.spc;*.par;*.esr"},
    {"\t\tBruker W-Band (*.DSC;*.DTA)", "*.DSC;*.DTA"},
    {"\t\tICCD", "*.crv;*.img"},
    {"\t\tHamamatsu (*.img;*.prf;*.str)", "*.img;*.prf;*.str"},
    {"\t\tCary45 (*.dhd)", "*.dhd"},
    {"\t\tCary (*.dsw)", "*.dsw"},
    {"\t\tDilors (*.m3d;*.ms0;*.ss0,*.msu)", "*.m3d;*.ms0;*.ss0;*.msu"},
    {"\t\tOMA (*.dat)", "*.dat"},
    {"\t\tCVT (*.cvt)", "*.cvt"},
    {"\t\tPRN (*.prn)", "*.prn"},
    {"\t\tP3D,B3D,P2D,B2D", "*.p3d;*.b3d;*p2d;*.b2d"},
    {"\t\tAll Files (*.*)", "*.*"},
};

}  // namespace kem::host
