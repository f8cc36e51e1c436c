const {ui} = imports;

export const {main: Main, popupMenu: PopupMenu} = ui;
export const {QuickMenuToggle, SystemIndicator} = ui.quickSettings;
export const {Slider} = ui.slider;
