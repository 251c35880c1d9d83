// The panel: its tabs, and that it opens and closes.

export function setUpPanel(element, part) {
  const tabs = [...element.querySelectorAll('[role=tab]')];
  const panelOf = (tab) => element.querySelector(`#${tab.getAttribute('aria-controls')}`);

  const select = (chosen) => {
    for (const tab of tabs) {
      tab.setAttribute('aria-selected', String(tab === chosen));
      tab.tabIndex = tab === chosen ? 0 : -1;
      panelOf(tab).hidden = tab !== chosen;
    }
  };
  for (const [i, tab] of tabs.entries()) {
    tab.addEventListener('click', () => select(tab));
    tab.addEventListener('keydown', (event) => {
      const to = { ArrowLeft: i - 1, ArrowRight: i + 1, Home: 0, End: tabs.length - 1 }[event.key];
      if (to === undefined) return;
      event.preventDefault();
      const next = tabs[(to + tabs.length) % tabs.length];
      select(next);
      next.focus();
    });
  }

  const toggle = part('panel-toggle');
  const open = (wanted) => {
    element.dataset.panel = wanted ? 'open' : 'closed';
    toggle.setAttribute('aria-expanded', String(wanted));
  };
  toggle.addEventListener('click', () => open(element.dataset.panel !== 'open'));
  const close = () => {
    open(false);
    toggle.focus();
  };
  part('panel-close').addEventListener('click', close);
  part('panel').addEventListener('keydown', (event) => {
    if (event.key === 'Escape') close();
  });
  // Beside the scene where there is room for both, over it where there isn't.
  open(matchMedia('(min-width: 60rem)').matches);
  return { open, select: (id) => select(element.querySelector(`#tab-${id}`)) };
}
