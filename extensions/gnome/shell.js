// The shell's own modules. Before 45 it has none, and 43/shell.js stands here.
export * as Main from 'resource:///org/gnome/shell/ui/main.js';
export * as PopupMenu from 'resource:///org/gnome/shell/ui/popupMenu.js';
export * as QuickSettings from 'resource:///org/gnome/shell/ui/quickSettings.js';
export {Slider} from 'resource:///org/gnome/shell/ui/slider.js';
