#pragma once

#include "LinkState.h"
#include "MainWindowViewController.h"
#include "SettingDialogViewController.h"

#include <QApplication>
#include <QFontDatabase>

namespace kavelo {

/// Gives all module-wide variables the values that they have at the start of a process.
inline void resetProgramState()
{
    resetLinkState();
    InitialState = SettingEnabled = timer2state = false;
    PedalName.clear();
    QApplication::setFont(QFontDatabase::systemFont(QFontDatabase::GeneralFont));
}

} // namespace kavelo
