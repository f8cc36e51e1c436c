const {ui} = imports;

export const {main: Main, popupMenu: PopupMenu, quickSettings: QuickSettings} = ui;
export const {Slider} = ui.slider;
