#pragma once

#include "platform/Bundle.h"
#include "platform/RecordableHotKeys.h"
#include "platform/Settings.h"

#include <string>

class QWidget;

/// The control that an alert names, as a child of `parent`; null for an unknown one. What is lent
/// must outlive it.
QWidget* makeAccessory(const std::string& name, platform::Settings& settings,
                       const platform::Bundle& bundle, platform::RecordableHotKeys& hotKeys,
                       QWidget* parent);
