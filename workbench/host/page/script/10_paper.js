// What goes to the printer: everything that the filter lets through, in full. It exists only while
// the page is printed.

function paperEvent(event) {
    return element('article', { class: 'paper-event' }, eventHeading(event, 'h3'), fieldsView(event),
        element('p', {}, 'Seen in this record: ', seenFor(event).join(' ')));
}

function fillPaper() {
    const log = filterLog();
    replaceContent(byId('paper'),
        element('h2', {}, 'Events in full'),
        element('p', {}, byId('status').textContent),
        shownEvents.map(paperEvent),
        log.length === 0 ? null : [element('h2', {}, 'Log'),
            table(['time, UTC', 'level', 'line'], log.map((line) =>
                [timeText(line.time), String(line.level), foreign(line.text)]))]);
}

function setUpPaper() {
    window.addEventListener('beforeprint', fillPaper);
    window.addEventListener('afterprint', () => replaceContent(byId('paper')));
    byId('print').addEventListener('click', () => window.print());
}
