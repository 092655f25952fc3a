"""A desktop's side of xdg-desktop-portal, as a template for python-dbusmock: settings that are given as parameters
("accent": [red, green, blue], "kdeAccent": text, "scheme": number), and e-mails."""
import dbus

BUS_NAME = 'org.freedesktop.impl.portal.desktop.mock'
MAIN_OBJ = '/org/freedesktop/portal/desktop'
MAIN_IFACE = 'org.freedesktop.impl.portal.Settings'
SYSTEM_BUS = False


def load(mock, parameters):
    appearance = dbus.Dictionary(signature='sv')
    kde = dbus.Dictionary(signature='sv')
    if 'accent' in parameters:
        appearance['accent-color'] = dbus.Struct([dbus.Double(part) for part in parameters['accent']], signature='ddd')
    if 'scheme' in parameters:
        appearance['color-scheme'] = dbus.UInt32(parameters['scheme'])
    if 'kdeAccent' in parameters:
        kde['AccentColor'] = parameters['kdeAccent']
    mock.settings = dbus.Dictionary({'org.freedesktop.appearance': appearance, 'org.kde.kdeglobals.General': kde},
                                    signature='sa{sv}')
    mock.AddMethods(MAIN_IFACE, [('ReadAll', 'as', 'a{sa{sv}}', 'ret = self.settings'),
                                 ('Read', 'ss', 'v', 'ret = self.settings[args[0]][args[1]]')])
    mock.AddProperties(MAIN_IFACE, {'version': dbus.UInt32(1)})
    mock.AddMethods('org.freedesktop.impl.portal.Access', [('AccessDialog', 'osssssa{sv}', 'ua{sv}', 'ret = (0, {})')])
    mock.AddMethods('org.freedesktop.impl.portal.Email', [('ComposeEmail', 'ossa{sv}', 'ua{sv}', 'ret = (0, {})')])
