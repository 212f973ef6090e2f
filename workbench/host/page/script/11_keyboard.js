// Shortcuts of a single key. They rest while the person types, and can be turned off.

const THEMES = ['system', 'light', 'dark'];
let theme = 'system';

function showTheme() {
    document.documentElement.dataset.theme = theme;
    byId('theme').textContent = `Theme: ${theme}`;
}

function nextTheme() {
    theme = THEMES[(THEMES.indexOf(theme) + 1) % THEMES.length];
    showTheme();
}

function goTo(id) {
    const target = byId(id);
    target.focus({ preventScroll: true });
    target.closest('section').scrollIntoView({ block: 'start' });
}

const SHORTCUTS = [
    ['/', 'search in the events', () => byId('search').focus()],
    ['j', 'next event', () => eventList.move(1)],
    ['k', 'previous event', () => eventList.move(-1)],
    ['e', 'list of events; arrows, Page, Home and End move', () => goTo('event-list')],
    ['f', 'event in full', () => goTo('detail')],
    ['l', 'log', () => goTo('log-list')],
    ['t', 'time line; arrows move, Enter opens', () => byId('lanes').querySelector('[tabindex="0"]')?.focus()],
    ['d', 'device lists', () => showList(currentList, true)],
    ['1', 'to 5: show or hide a kind of event', () => toggleKind(kindsPresent()[0])],
    ['x', 'reset the filter', resetFilter],
    ['m', 'light, dark, or as the system has it', nextTheme],
    ['?', 'this table', () => byId('shortcuts').showModal()],
];

function isTyping(target) {
    return target.closest('input:not([type=checkbox]), select, textarea, dialog') !== null;
}

function onKey(event) {
    if (event.key === 'Escape' && event.target.type === 'search') {
        event.target.blur();
        return;
    }
    if (event.ctrlKey || event.altKey || event.metaKey || isTyping(event.target) ||
        !byId('keys-on').checked) {
        return;
    }
    const kind = kindsPresent()[Number(event.key) - 1];
    const act = kind !== undefined ? () => toggleKind(kind)
        : SHORTCUTS.find(([key]) => key === event.key)?.[2];
    if (act) {
        event.preventDefault();
        act();
    }
}

function setUpKeyboard() {
    document.addEventListener('keydown', onKey);
    byId('theme').addEventListener('click', nextTheme);
    byId('help').addEventListener('click', () => byId('shortcuts').showModal());
    replaceContent(byId('shortcut-rows'), SHORTCUTS.map(([key, meaning]) =>
        element('tr', {}, element('th', { scope: 'row' }, element('kbd', {}, key)),
            element('td', {}, meaning))));
    showTheme();
}
