-- 0016_listed_names.sql
-- Why: a list of the supply list opens in the order of its entries' names. With the names in another table a planner
-- either walks all names of the supply list, slow for a list of few entries, or sorts the whole list, slow for one of
-- many. Lists keep the folds of the names by which their entries go, so that one index gives a page of any of them,
-- with the measure that is shown: otherwise a search for a part of a name looks every row up.

alter table SupplyLists add column FoldEffectiveName text collate "C";
alter table SupplyLists add column FoldEffectiveName2 text collate "C";
alter table SupplyListsDates add column FoldEffectiveName text collate "C";
alter table SupplyListsDates add column FoldEffectiveName2 text collate "C";
alter table BaseSupplyListDates add column FoldEffectiveName text collate "C";
alter table BaseSupplyListDates add column FoldEffectiveName2 text collate "C";

update SupplyLists set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = SupplyLists.SerialNumber;
update SupplyListsDates set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = SupplyListsDates.SerialNumber;
update BaseSupplyListDates set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = BaseSupplyListDates.SerialNumber;
create index SupplyListsByName
  on SupplyLists (KindList, FoldEffectiveName nulls first, SerialNumber, Measure);
create index SupplyListsByName2
  on SupplyLists (KindList, FoldEffectiveName2 nulls first, SerialNumber, Measure);
create index SupplyListsDatesByName
  on SupplyListsDates (KindList, AvailableFromDate, FoldEffectiveName nulls first, SerialNumber);
create index SupplyListsDatesByName2
  on SupplyListsDates (KindList, AvailableFromDate, FoldEffectiveName2 nulls first, SerialNumber);
create index BaseSupplyListDatesByName
  on BaseSupplyListDates (AvailableFromDate, FoldEffectiveName nulls first, SerialNumber);
create index BaseSupplyListDatesByName2
  on BaseSupplyListDates (AvailableFromDate, FoldEffectiveName2 nulls first, SerialNumber);

create function ListedEntryNamed() returns trigger language plpgsql as $$
begin
  select b.FoldEffectiveName, b.FoldEffectiveName2 into new.FoldEffectiveName, new.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = new.SerialNumber;
  return new;
end $$;
create trigger SupplyListsNamed before insert or update of SerialNumber on SupplyLists
  for each row execute function ListedEntryNamed();
create trigger SupplyListsDatesNamed before insert or update of SerialNumber on SupplyListsDates
  for each row execute function ListedEntryNamed();
create trigger BaseSupplyListDatesNamed before insert or update of SerialNumber on BaseSupplyListDates
  for each row execute function ListedEntryNamed();
create function EntryRenamedInLists() returns trigger language plpgsql as $$
begin
  update SupplyLists set FoldEffectiveName = new.FoldEffectiveName, FoldEffectiveName2 = new.FoldEffectiveName2
  where SerialNumber = new.SerialNumber;
  update SupplyListsDates set FoldEffectiveName = new.FoldEffectiveName, FoldEffectiveName2 = new.FoldEffectiveName2
  where KindList in
    (select KindList from SupplyLists where SerialNumber = new.SerialNumber) and SerialNumber = new.SerialNumber;
  update BaseSupplyListDates set FoldEffectiveName = new.FoldEffectiveName, FoldEffectiveName2 = new.FoldEffectiveName2
  where SerialNumber = new.SerialNumber;
  return null;
end $$;
create trigger SupplyEntryListed after update of FoldEffectiveName, FoldEffectiveName2 on BaseSupplyList
  for each row when (new.FoldEffectiveName is distinct from old.FoldEffectiveName
    or new.FoldEffectiveName2 is distinct from old.FoldEffectiveName2) execute function EntryRenamedInLists();
