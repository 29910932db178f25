#include "screens/all.h"

#include "screens/commands.h"
#include "session/session.h"

namespace tv {

extern const ScreenSpec kFrmMain, kForm2, kForm3, kForm4, kForm5, kForm7, kFormBorefrict, kFrmFast, kFormPsel,
    kFormGetInput, kFrmHelp, kFrmPic, kForm11, kForm12, kFormTail, kFrmBC, kFrmGun, kFormMOA, kFormBack,
    kForm8, kFrmPrimer, kForm9, kForm10, kFrmBP, kFormGset, kFrmMeas, kFrmColumns, kFrmFit, kFrmBand;

namespace {

// One line a screen. Where a value is shown on several screens, the focus goes to the first.
constexpr const ScreenSpec* kScreens[] = {
    &kFrmMain,        //
    &kForm2,          //
    &kForm3,          //
    &kForm4,          //
    &kForm5,          //
    &kForm7,          //
    &kForm9,          //
    &kFormBorefrict,  //
    &kFrmFast,        //
    &kFormPsel,       //
    &kFormGset,       //
    &kFormBack,       //
    &kForm8,          //
    &kFrmPrimer,      //
    &kFormGetInput,   //
    &kFrmHelp,        //
    &kFrmPic,         //
    &kForm11,         //
    &kForm12,         //
    &kFormTail,       //
    &kFrmBC,          //
    &kFrmGun,         //
    &kFormMOA,        //
    &kForm10,         //
    &kFrmBP,          //
    &kFrmMeas,        //
    &kFrmColumns,     //
    &kFrmFit,         //
    &kFrmBand,        //
};

}  // namespace

const Program& the_program() {
  static constexpr Program kProgram{kScreens, run_shortcut};
  return kProgram;
}

}  // namespace tv
