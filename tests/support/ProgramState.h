#pragma once

#include "LinkState.h"
#include "MainWindowViewController.h"
#include "SettingDialogViewController.h"

#include <QApplication>
#include <QFontDatabase>

namespace kavelo {

/// Puts all module-wide state into that of a fresh process, on whichever bus the units are.
inline void resetProgramState()
{
    resetLinkState();
    InitialState = SettingEnabled = timer2state = false;
    PedalName.clear();
    QApplication::setFont(QFontDatabase::systemFont(QFontDatabase::GeneralFont));
}

} // namespace kavelo
