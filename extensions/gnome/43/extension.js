/* exported init */
const Me = imports.misc.extensionUtils.getCurrentExtension();

/** As ../extension.js is: there this file is no module itself, and takes the others when it is enabled. */
class HandExtension {
    enable() {
        this._isOn = true;
        import(Me.dir.get_child('service.js').get_uri()).then(({Service}) => {
            if (this._isOn)
                this._service ??= new Service(Me);
        }).catch(error => logError(error, Me.uuid));
    }

    disable() {
        this._isOn = false;
        this._service?.destroy();
        this._service = null;
    }
}

function init() {
    return new HandExtension();
}
