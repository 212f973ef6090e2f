'use strict';

// Elements are made here and nowhere else. Texts go in as text nodes, so that a device's name that
// looks like markup stays a name.

const byId = (id) => document.getElementById(id);

/** Elements and texts out of lists of any depth; null is passed over. */
const flattened = (children) => children.flat(Infinity).filter((child) => child !== null);

/** An element with attributes and children. */
function element(tag, attributes = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (value === true) {
            made.setAttribute(name, '');
        } else if (value !== false && value !== null) {
            made.setAttribute(name, value);
        }
    }
    made.append(...flattened(children));
    return made;
}

function button(attributes, act, ...children) {
    const made = element('button', { type: 'button', ...attributes }, ...children);
    made.addEventListener('click', act);
    return made;
}

function replaceContent(parent, ...children) {
    parent.replaceChildren(...flattened(children));
}

// Controls, marks of writing direction and blanks without width could make a text look like
// another one. The joiners that scripts and emoji need stay, as do tabs and line feeds.
const UNSEEN = /[\u0000-\u0008\u000b-\u001f\u007f-\u009f\u00ad\u061c\u200b\u200e\u200f\u2028-\u202e\u2060-\u206f\ufeff]/g;

function visible(text) {
    return text.replace(UNSEEN, (character) =>
        `\u27e8U+${character.charCodeAt(0).toString(16).toUpperCase().padStart(4, '0')}\u27e9`);
}

/** A text that came from a device, the firmware or the log. */
const foreign = (text, className = null) => element('bdi', { class: className }, visible(text));

function table(headings, rows, caption = null) {
    return element('div', { class: 'scroll' },
        element('table', {},
            caption === null ? null : element('caption', {}, caption),
            element('thead', {}, element('tr', {},
                headings.map((heading) => element('th', { scope: 'col' }, heading)))),
            element('tbody', {}, rows.map((cells) => element('tr', {},
                cells.map((cell) => element('td', {}, cell)))))));
}

const count = (number, noun) => `${number.toLocaleString('en')} ${noun}${number === 1 ? '' : 's'}`;
const byteText = (bytes) => `${bytes.toLocaleString('en')}\u00a0B`;

/** "2026-11-20 18:54:03", always UTC. */
const timeText = (time) => new Date(time).toISOString().slice(0, 19).replace('T', ' ');

const dateText = (time) => timeText(time).slice(0, 10);

function spanText(milliseconds) {
    const minutes = Math.floor(milliseconds / 60000);
    const parts = [[Math.floor(minutes / 1440), 'd'], [Math.floor(minutes / 60) % 24, 'h'],
        [minutes % 60, 'min']].filter(([amount]) => amount !== 0);
    return parts.length === 0 ? `${Math.round(milliseconds / 1000)} s`
        : parts.slice(0, 2).map(([amount, unit]) => `${amount} ${unit}`).join(' ');
}
