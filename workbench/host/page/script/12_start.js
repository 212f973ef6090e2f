const eventList = new RowList(byId('event-list'), 54, eventRow, (event) => {
    showDetail(event);
    showLogAt(event.time);
});

replaceContent(byId('origin'), foreign(record.origin));
replaceContent(byId('extent'), `${count(events.length, 'event')} and ${count(lines.length, 'log line')}` +
    (events.length === 0 ? '' : `, ${timeText(period.from)} to ${timeText(period.to)} UTC`));
showSummary();
setUpFilter();
setUpTimeline();
setUpPaper();
setUpKeyboard();
for (const [id, kind] of [['log-search', 'input'], ['hide-loop', 'change']]) {
    byId(id).addEventListener(kind, filterLog);
}
filterLog();
applyFilter();
drawLists();
showRules();
