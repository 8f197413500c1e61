-- 0016_listed_names.sql
-- Why: a list of the supply list opens in the order of its entries' names. With the names in another table a planner
-- either walks all names of the supply list, slow for a list of few entries, or sorts the whole list, slow for one of
-- many. Lists keep the folds of the names by which their entries go, so that one index gives a page of any of them,
-- with the measure that is shown: otherwise a search for a part of a name looks every row up.

alter table SupplyLists add column FoldEffectiveName text;
alter table SupplyLists add column FoldEffectiveName2 text;
alter table SupplyListsDates add column FoldEffectiveName text;
alter table SupplyListsDates add column FoldEffectiveName2 text;
alter table BaseSupplyListDates add column FoldEffectiveName text;
alter table BaseSupplyListDates add column FoldEffectiveName2 text;

update SupplyLists set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = SupplyLists.SerialNumber;
update SupplyListsDates set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = SupplyListsDates.SerialNumber;
update BaseSupplyListDates set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = BaseSupplyListDates.SerialNumber;
create index SupplyListsByName on SupplyLists (KindList, FoldEffectiveName, SerialNumber, Measure);
create index SupplyListsByName2 on SupplyLists (KindList, FoldEffectiveName2, SerialNumber, Measure);
create index SupplyListsDatesByName
  on SupplyListsDates (KindList, AvailableFromDate, FoldEffectiveName, SerialNumber);
create index SupplyListsDatesByName2
  on SupplyListsDates (KindList, AvailableFromDate, FoldEffectiveName2, SerialNumber);
create index BaseSupplyListDatesByName
  on BaseSupplyListDates (AvailableFromDate, FoldEffectiveName, SerialNumber);
create index BaseSupplyListDatesByName2
  on BaseSupplyListDates (AvailableFromDate, FoldEffectiveName2, SerialNumber);

create trigger SupplyListsAdded after insert on SupplyLists begin
  update SupplyLists set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = SupplyLists.SerialNumber
    and SupplyLists.SerialNumber = new.SerialNumber and SupplyLists.KindList = new.KindList;
end;
create trigger SupplyListsMoved after update of SerialNumber on SupplyLists begin
  update SupplyLists set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = SupplyLists.SerialNumber
    and SupplyLists.SerialNumber = new.SerialNumber and SupplyLists.KindList = new.KindList;
end;
create trigger SupplyListsDatesAdded after insert on SupplyListsDates begin
  update SupplyListsDates set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = SupplyListsDates.SerialNumber
    and SupplyListsDates.SerialNumber = new.SerialNumber and SupplyListsDates.KindList = new.KindList
    and SupplyListsDates.AvailableFromDate = new.AvailableFromDate;
end;
create trigger SupplyListsDatesMoved after update of SerialNumber on SupplyListsDates begin
  update SupplyListsDates set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = SupplyListsDates.SerialNumber
    and SupplyListsDates.SerialNumber = new.SerialNumber and SupplyListsDates.KindList = new.KindList
    and SupplyListsDates.AvailableFromDate = new.AvailableFromDate;
end;
create trigger BaseSupplyListDatesAdded after insert on BaseSupplyListDates begin
  update BaseSupplyListDates set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = BaseSupplyListDates.SerialNumber
    and BaseSupplyListDates.SerialNumber = new.SerialNumber
    and BaseSupplyListDates.AvailableFromDate = new.AvailableFromDate;
end;
create trigger BaseSupplyListDatesMoved after update of SerialNumber on BaseSupplyListDates begin
  update BaseSupplyListDates set FoldEffectiveName = b.FoldEffectiveName, FoldEffectiveName2 = b.FoldEffectiveName2
  from BaseSupplyList b where b.SerialNumber = BaseSupplyListDates.SerialNumber
    and BaseSupplyListDates.SerialNumber = new.SerialNumber
    and BaseSupplyListDates.AvailableFromDate = new.AvailableFromDate;
end;
create trigger SupplyEntryListed after update of FoldEffectiveName, FoldEffectiveName2 on BaseSupplyList
  when new.FoldEffectiveName is not old.FoldEffectiveName
    or new.FoldEffectiveName2 is not old.FoldEffectiveName2
begin
  update SupplyLists set FoldEffectiveName = new.FoldEffectiveName, FoldEffectiveName2 = new.FoldEffectiveName2
  where SerialNumber = new.SerialNumber;
  update SupplyListsDates set FoldEffectiveName = new.FoldEffectiveName, FoldEffectiveName2 = new.FoldEffectiveName2
  where KindList in
    (select KindList from SupplyLists where SerialNumber = new.SerialNumber) and SerialNumber = new.SerialNumber;
  update BaseSupplyListDates set FoldEffectiveName = new.FoldEffectiveName, FoldEffectiveName2 = new.FoldEffectiveName2
  where SerialNumber = new.SerialNumber;
end;
