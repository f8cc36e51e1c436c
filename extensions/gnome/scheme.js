import Gio from 'gi://Gio';

const SCHEMA = 'org.gnome.desktop.interface';
const KEY = 'color-scheme';

/** Tells whether the user wishes for dark windows, as it is now and whenever it changes. */
export class Scheme {
    constructor(tell) {
        const schema = Gio.SettingsSchemaSource.get_default()?.lookup(SCHEMA, true);
        if (!schema?.has_key(KEY))
            throw new Error(`the shell has no ${KEY}`);
        this._settings = new Gio.Settings({settings_schema: schema});
        const tellNow = () => tell(this._settings.get_string(KEY) === 'prefer-dark');
        this._changed = this._settings.connect(`changed::${KEY}`, tellNow);
        tellNow();
    }

    destroy() {
        this._settings.disconnect(this._changed);
    }
}
